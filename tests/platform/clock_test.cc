#include "vosmere/platform/internal/clock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace vosmere::test {
namespace {

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

}  // namespace
}  // namespace vosmere::test
