// Dates as people read them.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Dates in local time with English names, as new system strings, which the caller frees. Empty for
/// a time that the platform's calendar cannot convert; null without memory. Stateless; any thread.
struct VOSMERE_API DisplayDate {
  static BSTR GetShowDate(LONG time);       ///< "Sat 01/03/2008 14:05", the day first
  static BSTR GetShowDate2(LONG time);      ///< "Mar 01 2008 14:05 Sat"
  static BSTR GetShowDateShort(LONG time);  ///< "Mar 01 2008 14:05"
};

}  // namespace vosmere
