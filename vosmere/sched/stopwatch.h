#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// A stopwatch on the time of day, and dates for people.
class VOSMERE_API CTimeTest {
 public:
  virtual ~CTimeTest();

  void SetStart();
  /// Seconds since SetStart; since 1970-01-01 00:00 UTC without one.
  double GetEndSeconds() const;
  /// The same, and traces it with the label.
  double OnStop(const WChar* label) const;

  /// Dates in local time with English names, as new system strings, which the caller frees. Empty
  /// for a time that the platform's calendar cannot convert; null without memory.
  static BSTR GetShowDate(LONG time);       ///< "Sat 01/03/2008 14:05", the day first
  static BSTR GetShowDate2(LONG time);      ///< "Mar 01 2008 14:05 Sat"
  static BSTR GetShowDateShort(LONG time);  ///< "Mar 01 2008 14:05"

 private:
  double start_ = 0;
};

}  // namespace vosmere
