#include "vosmere/platform/clock.h"

#include <atomic>
#include <ctime>

namespace vosmere {
namespace {

std::atomic<LONG (*)()> testClock{nullptr};

}  // namespace

LONG ClockSeconds() {
  auto* const clock = testClock.load();
  return clock ? clock() : static_cast<LONG>(std::time(nullptr));
}

bool LocalCalendar(LONG seconds, CalendarTime* calendar) {
  const std::time_t time = seconds;
  std::tm local;
  tzset();  // localtime_r need not notice that TZ has changed
  if (!localtime_r(&time, &local)) return false;
  *calendar = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
               local.tm_min,         local.tm_sec,     local.tm_wday};
  return true;
}

LONG ZoneSecondsWest() {
  tzset();
  return static_cast<LONG>(timezone);
}

void SetClockForTesting(LONG (*clock)()) {
  testClock = clock;
}

}  // namespace vosmere
