// The time zone of the C runtime, one thread at a time (calendar.cc sees to that).
#pragma once

#include <ctime>

#include "vosmere/base/types.h"

namespace vosmere::runtime_zone {

/// Takes over the zone that is set now.
void LookUp();

/// False for a time that the runtime cannot convert.
bool ToLocal(LONG seconds, std::tm* local);

/// From local standard time to UTC.
LONG SecondsWest();

}  // namespace vosmere::runtime_zone
