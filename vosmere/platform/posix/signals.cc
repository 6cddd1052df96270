// Signals with a mutex and a condition variable.
#include "vosmere/platform/internal/signals.h"

#include <sys/prctl.h>

#include <bit>
#include <condition_variable>
#include <mutex>

namespace vosmere {

struct Signals::State {
  std::mutex mutex;
  std::condition_variable changed;
  unsigned set = 0;  // one bit for each event
};

Signals::Signals(int) : state_(std::make_unique<State>()) {}

Signals::~Signals() = default;

// Notifies while holding the lock: after its release, the waiting thread may already have destroyed
// this object.
void Signals::Set(int which) {
  const std::lock_guard lock(state_->mutex);
  state_->set |= 1u << which;
  state_->changed.notify_all();
}

void Signals::Mark(int which) {
  const std::lock_guard lock(state_->mutex);
  state_->set |= 1u << which;
}

void Signals::Wake() {
  state_->changed.notify_all();
}

void Signals::Reset(int which) {
  const std::lock_guard lock(state_->mutex);
  state_->set &= ~(1u << which);
}

int Signals::Wait(Clock::time_point deadline) {
  std::unique_lock lock(state_->mutex);
  const auto anySet = [this] { return state_->set != 0; };
  if (deadline == Clock::time_point::max())
    state_->changed.wait(lock, anySet);
  else
    state_->changed.wait_until(lock, deadline, anySet);
  return state_->set ? std::countr_zero(state_->set) : kNone;
}

void SharpenWaits() {
  // By default the kernel may end a wait 50 microseconds late to combine wake-ups.
  ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

}  // namespace vosmere
