// The calendar of the local time zone, made thread-safe.
#include <mutex>

#include "vosmere/platform/internal/clock.h"
#include "vosmere/platform/internal/time_zone.h"

namespace vosmere {
namespace {

// Guards the runtime's time zone: while one thread sets it up, other threads would see intermediate
// values.
std::mutex zoneLock;

// Done once only, because looking up the zone may access the file system, which would cost more
// than everything else in formatting a date.
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
