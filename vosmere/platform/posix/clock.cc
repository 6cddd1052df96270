#include "vosmere/platform/clock.h"

#include <ctime>
#include <mutex>

namespace vosmere {
namespace {

// Guards the runtime's zone, which one thread may set up while another reads it.
std::mutex zoneLock;

// Looking up the zone may go to the file system, and would cost more than all else in a date.
void SetUpZoneOnce() {
  static const bool done = (SetUpZone(), true);
  static_cast<void>(done);
}

}  // namespace

void SetUpZone() {
  const std::lock_guard<std::mutex> lock(zoneLock);
  tzset();
}

bool LocalCalendar(LONG seconds, CalendarTime* calendar) {
  SetUpZoneOnce();  // localtime_r need not do it
  const std::lock_guard<std::mutex> lock(zoneLock);
  const std::time_t time = seconds;
  std::tm local;
  if (!localtime_r(&time, &local)) return false;
  *calendar = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
               local.tm_min,         local.tm_sec,     local.tm_wday};
  return true;
}

LONG ZoneSecondsWest() {
  SetUpZoneOnce();
  const std::lock_guard<std::mutex> lock(zoneLock);
  return static_cast<LONG>(timezone);
}

}  // namespace vosmere
