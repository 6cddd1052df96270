#include "vosmere/platform/clock.h"

#include <time.h>

#include <mutex>

namespace vosmere {
namespace {

// The runtime's zone variables pass through other values while they are being set.
std::mutex zoneLock;

void SetUpZoneOnce() {
  static const bool done = (SetUpZone(), true);
  static_cast<void>(done);
}

}  // namespace

void SetUpZone() {
  const std::lock_guard<std::mutex> lock(zoneLock);
  _tzset();
}

bool LocalCalendar(LONG seconds, CalendarTime* calendar) {
  SetUpZoneOnce();
  const std::lock_guard<std::mutex> lock(zoneLock);
  const __time64_t time = seconds;
  const tm* const local = _localtime64(&time);  // the thread's own record
  if (!local) return false;
  *calendar = {local->tm_year + 1900, local->tm_mon + 1, local->tm_mday, local->tm_hour,
               local->tm_min,         local->tm_sec,     local->tm_wday};
  return true;
}

LONG ZoneSecondsWest() {
  SetUpZoneOnce();
  const std::lock_guard<std::mutex> lock(zoneLock);
  return _timezone;
}

}  // namespace vosmere
