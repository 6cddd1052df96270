// Signals with event objects.
#include "vosmere/platform/internal/signals.h"

#include <windows.h>

#include <algorithm>
#include <new>

#include "vosmere/platform/win32/wait.h"

namespace vosmere {

// Kernel objects, because they are the only ones that stay usable when a waiting thread is
// terminated.
struct Signals::State {
  HANDLE events[2] = {};
  DWORD count = 0;

  ~State() { std::for_each_n(events, count, ::CloseHandle); }
};

Signals::Signals(int count) : state_(std::make_unique<State>()) {
  while (state_->count < static_cast<DWORD>(count)) {
    const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!event) throw std::bad_alloc();
    state_->events[state_->count++] = event;
  }
}

Signals::~Signals() = default;

void Signals::Set(int which) {
  ::SetEvent(state_->events[which]);
}

void Signals::Mark(int which) {
  Set(which);
}

void Signals::Wake() {}

void Signals::Reset(int which) {
  ::ResetEvent(state_->events[which]);
}

int Signals::Wait(Clock::time_point deadline) {
  const DWORD result = WaitUntil(state_->events, state_->count, deadline);
  return result < WAIT_OBJECT_0 + state_->count ? static_cast<int>(result - WAIT_OBJECT_0) : kNone;
}

void SharpenWaits() {}  // only a faster clock tick would help, but it affects the whole process

}  // namespace vosmere
