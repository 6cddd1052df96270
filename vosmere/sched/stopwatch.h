// CTimeTest, a stopwatch.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/text/display_date.h"

namespace vosmere {

/// A stopwatch that uses the time of day, in milliseconds; setting the clock shifts its result. It
/// inherits the date texts of DisplayDate.
class VOSMERE_API CTimeTest : public DisplayDate {
 public:
  virtual ~CTimeTest();

  /// Starts the stopwatch at the current time.
  void SetStart();
  /// Seconds since SetStart, or since 1970-01-01 00:00 UTC if that was never called.
  double GetEndSeconds() const;
  /// Like GetEndSeconds, and traces the result with the label. A null label is empty.
  double OnStop(const WChar* label) const;

 private:
  double start_ = 0;
};

}  // namespace vosmere
