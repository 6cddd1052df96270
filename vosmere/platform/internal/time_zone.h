// The time zone of the C runtime. Not thread-safe; calendar.cc holds a lock around every call.
#pragma once

#include <ctime>

#include "vosmere/base/types.h"

namespace vosmere::runtime_zone {

/// Reads the time zone that is set now.
void LookUp();

/// Converts to local time. False for a time that the runtime cannot convert.
bool ToLocal(LONG seconds, std::tm* local);

/// Seconds from local standard time to UTC, positive west of Greenwich.
LONG SecondsWest();

}  // namespace vosmere::runtime_zone
