// A stopwatch.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/text/display_date.h"

namespace vosmere {

/// A stopwatch on the time of day. It also shows times as dates for people.
class VOSMERE_API CTimeTest : public DisplayDate {
 public:
  virtual ~CTimeTest();

  void SetStart();
  /// Seconds since SetStart; since 1970-01-01 00:00 UTC without one.
  double GetEndSeconds() const;
  /// The same, and traces it with the label.
  double OnStop(const WChar* label) const;

 private:
  double start_ = 0;
};

}  // namespace vosmere
