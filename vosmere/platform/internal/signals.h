// Signals, events that threads can wait for.
#pragma once

#include <chrono>
#include <memory>

namespace vosmere {

/// One or two manual-reset events that a thread can wait for together. They are numbered from 0 and
/// initially not set. Thread-safe. A thread that waited may destroy the object as soon as its wait
/// has ended.
class Signals {
 public:
  using Clock = std::chrono::steady_clock;  // not affected by changes of the time of day
  static constexpr int kNone = -1;

  /// Throws std::bad_alloc when memory or the system's event objects run out.
  explicit Signals(int count);
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;
  ~Signals();

  /// Sets an event and wakes up the waiting threads.
  void Set(int which);
  /// Set in two steps, for callers that hold a lock which the waiting thread takes next: Mark sets
  /// the event, and Wake, called after releasing the lock, wakes up the waiting threads. The caller
  /// makes sure that the object still exists then.
  void Mark(int which);
  void Wake();
  /// Clears an event.
  void Reset(int which);

  /// Waits until an event is set and returns its number, the lowest if both are set. Returns kNone
  /// when the deadline passes first. The event stays set.
  int Wait(Clock::time_point deadline = Clock::time_point::max());

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Makes the timed waits of the calling thread end as close to their deadlines as the platform can.
/// The price is power: the system then wakes up the processor for this thread alone.
void SharpenWaits();

}  // namespace vosmere
