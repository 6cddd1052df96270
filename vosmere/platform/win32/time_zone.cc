// The time zone of the C runtime.
#include "vosmere/platform/internal/time_zone.h"

#include <time.h>

namespace vosmere::runtime_zone {

void LookUp() {
  _tzset();
}

bool ToLocal(LONG seconds, std::tm* local) {
  const __time64_t time = seconds;
  const std::tm* const found = _localtime64(&time);  // a record of this thread
  if (found) *local = *found;
  return found != nullptr;
}

LONG SecondsWest() {
  return _timezone;
}

}  // namespace vosmere::runtime_zone
