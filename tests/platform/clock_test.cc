#include "vosmere/platform/internal/clock.h"

#include <ctime>

#include "tests/support/test.h"

namespace vosmere::test::clock {

TEST(Clock, TellsTheSystemsTimeUnlessReplaced) {
  const auto now = static_cast<LONG>(std::time(nullptr));
  EXPECT_LE(ClockSeconds() - now, 1);
  SetClockForTesting([]() -> LONG { return -5; });
  EXPECT_EQ(ClockSeconds(), -5);
  EXPECT_EQ(ClockNow().seconds, -5);
  EXPECT_EQ(ClockNow().milliseconds, 0);
  SetClockForTesting(nullptr);
  EXPECT_LE(ClockNow().seconds - now, 1);
  EXPECT_GE(ClockSeconds(), now);
}

}  // namespace vosmere::test::clock
