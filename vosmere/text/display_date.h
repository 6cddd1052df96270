// Dates in the form in which the user sees them.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Local dates and times with English names, from seconds since 1970-01-01 00:00 UTC. Each returns
/// a new system string that the caller frees with SysFreeString: the empty text for a time that the
/// platform's calendar cannot convert, and null when memory runs out. Has no state; may be called
/// on any thread.
struct VOSMERE_API DisplayDate {
  static BSTR GetShowDate(LONG time);       ///< "Sat 01/03/2008 14:05", day before month
  static BSTR GetShowDate2(LONG time);      ///< "Mar 01 2008 14:05 Sat"
  static BSTR GetShowDateShort(LONG time);  ///< "Mar 01 2008 14:05"
};

}  // namespace vosmere
