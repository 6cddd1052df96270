#include "vosmere/platform/clock.h"

#include <time.h>

#include <atomic>

namespace vosmere {
namespace {

std::atomic<LONG (*)()> testClock{nullptr};

}  // namespace

LONG ClockSeconds() {
  if (auto* const clock = testClock.load(std::memory_order_relaxed)) return clock();
  return static_cast<LONG>(::time(nullptr));
}

bool LocalCalendar(LONG seconds, CalendarTime* calendar) {
  const time_t time = seconds;
  tm local;
  ::tzset();  // localtime_r need not look at a zone that was changed
  if (!::localtime_r(&time, &local)) return false;
  *calendar = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
               local.tm_min,         local.tm_sec,     local.tm_wday};
  return true;
}

LONG ZoneSecondsWest() {
  ::tzset();
  return static_cast<LONG>(::timezone);
}

void SetClockForTesting(LONG (*clock)()) { testClock = clock; }

}  // namespace vosmere
