#include "vosmere/platform/clock.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <limits>
#include <string>

#include "tests/support/platform.h"

namespace vosmere::test {
namespace {

std::string Shown(LONG seconds) {
  CalendarTime t;
  if (!LocalCalendar(seconds, &t)) return "none";
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d %d", t.year, t.month, t.day,
                t.hour, t.minute, t.second, t.weekday);
  return text;
}

TEST(Clock, TellsTheSystemsTimeUnlessReplaced) {
  const auto now = static_cast<LONG>(std::time(nullptr));
  EXPECT_LE(ClockSeconds() - now, 1);
  SetClockForTesting([]() -> LONG { return -5; });
  EXPECT_EQ(ClockSeconds(), -5);
  SetClockForTesting(nullptr);
  EXPECT_GE(ClockSeconds(), now);
}

TEST(Clock, CalendarAndOffsetFollowTheTimeZone) {
  const struct {
    const char* zone;
    LONG west;
    const char* shown;
  } cases[] = {{"UTC0", 0, "2024-01-01 12:00:00 1"},
               {"CST-8", -8 * 3600, "2024-01-01 20:00:00 1"},
               {"IST-5:30", -19800, "2024-01-01 17:30:00 1"},
               {"HST10", 10 * 3600, "2024-01-01 02:00:00 1"}};
  for (const auto& c : cases) {
    const ScopedTimeZone zone(c.zone);
    EXPECT_EQ(Shown(1704110400), c.shown) << c.zone;
    EXPECT_EQ(ZoneSecondsWest(), c.west) << c.zone;
  }
}

TEST(Clock, OffsetLeavesDaylightSavingOut) {
  const ScopedTimeZone zone("EST5EDT");
  EXPECT_EQ(ZoneSecondsWest(), 5 * 3600);
}

TEST(Clock, ConvertsTheWholeRangeOrSaysNo) {
  const ScopedTimeZone zone("UTC0");
  EXPECT_EQ(Shown(0), "1970-01-01 00:00:00 4");
  EXPECT_EQ(Shown(std::numeric_limits<LONG>::max()), "2038-01-19 03:14:07 2");
  const std::string first = Shown(std::numeric_limits<LONG>::min());
  EXPECT_TRUE(first == "1901-12-13 20:45:52 5" || first == "none") << first;
}

}  // namespace
}  // namespace vosmere::test
