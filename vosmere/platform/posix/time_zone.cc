// The time zone of the C runtime.
#include "vosmere/platform/internal/time_zone.h"

namespace vosmere::runtime_zone {

void LookUp() {
  tzset();
}

bool ToLocal(LONG seconds, std::tm* local) {
  const std::time_t time = seconds;
  return localtime_r(&time, local) != nullptr;
}

LONG SecondsWest() {
  return static_cast<LONG>(timezone);
}

}  // namespace vosmere::runtime_zone
