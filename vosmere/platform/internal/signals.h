// Events that threads wait for.
#pragma once

#include <chrono>
#include <memory>

namespace vosmere {

/// One or two manual-reset events that a thread can wait for together, numbered from 0 and at first
/// not set. Any thread. One that waited may destroy the object as soon as its wait is over.
class Signals {
 public:
  using Clock = std::chrono::steady_clock;  // setting the time of day moves no deadline
  static constexpr int kNone = -1;

  /// Throws std::bad_alloc when the system has no more of them to give.
  explicit Signals(int count);
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;
  ~Signals();

  void Set(int which);
  /// Set in two steps, for callers that hold a lock which those who wait will want: set the event,
  /// and, without the lock, wake them up. The caller sees to it that the object still exists.
  void Mark(int which);
  void Wake();
  void Reset(int which);

  /// The lowest event that is set, as soon as one is; kNone when the deadline came first.
  int Wait(Clock::time_point deadline = Clock::time_point::max());

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Lets the timed waits of the calling thread end as near to their deadlines as the platform can,
/// at the price of waking the processor for it alone.
void SharpenWaits();

}  // namespace vosmere
