// The clock, and the calendar of the local time zone.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// Seconds since 1970-01-01 00:00 UTC, wrapped to 32 bits.
LONG ClockSeconds();

/// A time of day, precise to the microsecond.
struct ClockMoment {
  LONG seconds;      // since 1970-01-01 00:00 UTC, wrapped to 32 bits
  int milliseconds;  // 0 to 999
  int microseconds;  // 0 to 999, in addition to the milliseconds
};

/// The current time of day.
ClockMoment ClockNow();

/// Makes the local times of this process follow the time zone that is set now: the TZ environment
/// variable, or else the system's setting. Before the first call they follow the zone that was set
/// when one was first needed.
void SetUpZone();

/// A date and time of day in the local time zone.
struct CalendarTime {
  int year;     // all digits, such as 2008
  int month;    // 1 to 12
  int day;      // 1 to 31
  int hour;     // 0 to 23
  int minute;   // 0 to 59
  int second;   // 0 to 60, because of leap seconds
  int weekday;  // 0 to 6, from Sunday
};

/// Converts seconds since 1970-01-01 00:00 UTC to the local time zone of the process. False for a
/// time that the platform cannot convert. Thread-safe.
bool LocalCalendar(LONG seconds, CalendarTime* calendar);

/// Seconds to add to local standard time to get UTC, positive west of Greenwich. Daylight saving
/// time is never included.
LONG ZoneSecondsWest();

/// Replaces the clock in tests; null restores it. With null `milliseconds` the replaced clock is
/// always at the start of a second.
void SetClockForTesting(LONG (*clock)(), int (*milliseconds)() = nullptr);

}  // namespace vosmere
