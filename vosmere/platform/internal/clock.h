// The clock and the calendar.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// Seconds since 1970-01-01 00:00 UTC, wrapped to 32 bits.
LONG ClockSeconds();

struct ClockMoment {
  LONG seconds;      // since 1970-01-01 00:00 UTC, wrapped to 32 bits
  int milliseconds;  // 0 to 999
  int microseconds;  // 0 to 999, beyond the milliseconds
};

ClockMoment ClockNow();

/// Makes local times of this process follow the zone that is set now (the TZ environment variable,
/// the system's setting else). They follow the one that was set at the first use before.
void SetUpZone();

struct CalendarTime {
  int year;     // as people write it
  int month;    // 1 to 12
  int day;      // 1 to 31
  int hour;     // 0 to 23
  int minute;   // 0 to 59
  int second;   // 0 to 60
  int weekday;  // 0 is Sunday
};

/// The calendar of the process's time zone. False for a time that the platform cannot convert.
bool LocalCalendar(LONG seconds, CalendarTime* calendar);

/// Seconds to add to local standard time to get UTC: positive west of Greenwich. Daylight saving
/// never counts.
LONG ZoneSecondsWest();

/// Replaces the clock in tests; null restores it. Without `milliseconds` a replaced clock stands at
/// the start of its seconds.
void SetClockForTesting(LONG (*clock)(), int (*milliseconds)() = nullptr);

}  // namespace vosmere
