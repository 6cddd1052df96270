// The time zone of the C runtime.
#include "vosmere/platform/internal/time_zone.h"

#include <time.h>

namespace vosmere::runtime_zone {

void LookUp() {
  _tzset();
}

bool ToLocal(LONG seconds, std::tm* local) {
  // The runtime refuses times before 1970. The calendar repeats itself after 400 years, days of the
  // week included.
  constexpr int kCycleYears = 400;
  constexpr __time64_t kCycle = __time64_t{146'097} * 24 * 60 * 60;
  const bool isEarly = seconds < 0;
  const __time64_t time = seconds + (isEarly ? kCycle : 0);
  const std::tm* const found = _localtime64(&time);  // a record of this thread
  if (!found) return false;
  *local = *found;
  if (isEarly) local->tm_year -= kCycleYears;
  return true;
}

LONG SecondsWest() {
  return _timezone;
}

}  // namespace vosmere::runtime_zone
