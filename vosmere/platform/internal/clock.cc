// The clock, which tests can replace.
#include "vosmere/platform/internal/clock.h"

#include <atomic>
#include <chrono>
#include <ctime>

namespace vosmere {
namespace {

std::atomic<LONG (*)()> testClock{nullptr};
std::atomic<int (*)()> testMilliseconds{nullptr};

}  // namespace

LONG ClockSeconds() {
  auto* const clock = testClock.load();
  return clock ? clock() : static_cast<LONG>(std::time(nullptr));
}

ClockMoment ClockNow() {
  using namespace std::chrono;
  if (auto* const clock = testClock.load()) {
    auto* const milliseconds = testMilliseconds.load();
    return {clock(), milliseconds ? milliseconds() : 0, 0};
  }
  const auto now = floor<microseconds>(system_clock::now().time_since_epoch());
  const auto second = floor<seconds>(now);
  const auto rest = static_cast<int>((now - second).count());
  return {static_cast<LONG>(second.count()), rest / 1000, rest % 1000};
}

void SetClockForTesting(LONG (*clock)(), int (*milliseconds)()) {
  // Before the clock: ClockNow reads the milliseconds only when it finds a clock.
  testMilliseconds = milliseconds;
  testClock = clock;
}

}  // namespace vosmere
