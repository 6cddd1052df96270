#include <mutex>

#include "vosmere/platform/internal/clock.h"
#include "vosmere/platform/internal/time_zone.h"

namespace vosmere {
namespace {

// The runtime's zone passes through other values while one thread sets it up.
std::mutex zoneLock;

// Looking up the zone may go to the file system, and would cost more than all else in a date.
void SetUpZoneOnce() {
  static const bool done = (SetUpZone(), true);
  static_cast<void>(done);
}

}  // namespace

void SetUpZone() {
  const std::lock_guard lock(zoneLock);
  runtime_zone::LookUp();
}

bool LocalCalendar(LONG seconds, CalendarTime* calendar) {
  SetUpZoneOnce();
  const std::lock_guard lock(zoneLock);
  std::tm local;
  if (!runtime_zone::ToLocal(seconds, &local)) return false;
  *calendar = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
               local.tm_min,         local.tm_sec,     local.tm_wday};
  return true;
}

LONG ZoneSecondsWest() {
  SetUpZoneOnce();
  const std::lock_guard lock(zoneLock);
  return runtime_zone::SecondsWest();
}

}  // namespace vosmere
