// Timed jobs in tests, and a clock that a test moves.
//
//   const SteppedClock clock(1000, 500);             // until the end of the scope
//   Job job(1000, 600, [](Job&) { ... });            // due in 100 ms
//   clock.Set(1000, 600);
#pragma once

#include <atomic>
#include <functional>
#include <utility>

#include "vosmere/platform/internal/clock.h"
#include "vosmere/sched/time_event.h"

namespace vosmere::test {

class SteppedClock {
 public:
  /// Each reading moves it by so many seconds.
  explicit SteppedClock(LONG time, int milliseconds = 0, LONG step = 0) {
    Set(time, milliseconds);
    step_ = step;
    SetClockForTesting([]() -> LONG { return time_.fetch_add(step_); },
                       []() -> int { return milliseconds_; });
  }
  SteppedClock(const SteppedClock&) = delete;
  ~SteppedClock() { SetClockForTesting(nullptr); }

  void Set(LONG time, int milliseconds) const {
    time_ = time;
    milliseconds_ = milliseconds;
  }

 private:
  static inline std::atomic<LONG> time_, step_;
  static inline std::atomic<int> milliseconds_;
};

/// A job that calls a function. Jobs with an id are the same if their ids are equal.
class Job : public CTimeEvent {
 public:
  using Work = std::function<void(Job&)>;

  /// Due now.
  explicit Job(Work work = {}) : work_(std::move(work)) {}
  Job(LONG time, int milliseconds, Work work = {}) : work_(std::move(work)) {
    SetTime(time, milliseconds);
  }

  bool IsTheSameEvent(CTimeEvent* other) override {
    return GetID() ? GetID() == other->GetID() : CTimeEvent::IsTheSameEvent(other);
  }
  void DoEvent() override {
    if (const Work work = work_) work(*this);  // a copy, because the job may free itself
  }

 private:
  Work work_;
};

}  // namespace vosmere::test
