// Thread with the threads of Windows.
#include "vosmere/platform/internal/thread.h"

#include <windows.h>

#include <process.h>

#include <new>
#include <utility>

#include "vosmere/platform/win32/wait.h"

namespace vosmere {

struct Thread::State {
  HANDLE handle = nullptr;
  unsigned id = 0;
};

Thread::Thread() = default;

// The handle stays open, because the program may still be waiting for it.
Thread::~Thread() = default;

bool Thread::Create(Entry entry, void* argument, unsigned stackSize,
                    _SECURITY_ATTRIBUTES* security) try {
  state_.reset();
  auto state = std::make_shared<State>();
  state->handle = reinterpret_cast<HANDLE>(
      ::_beginthreadex(security, stackSize, entry, argument, CREATE_SUSPENDED, &state->id));
  if (!state->handle) return false;
  state_ = std::move(state);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

ULONG Thread::Resume() {
  return handle() ? ::ResumeThread(handle()) : kNoThread;
}

bool Thread::Terminate() {
  if (!handle()) return true;
  ::TerminateThread(handle(), 0);
  ::WaitForSingleObject(handle(), INFINITE);
  ::CloseHandle(std::exchange(state_->handle, nullptr));
  return true;
}

bool Thread::Wait(Clock::time_point deadline) {
  if (!handle()) return true;
  if (id() == ::GetCurrentThreadId()) return false;
  return WaitUntil(&state_->handle, 1, deadline) == WAIT_OBJECT_0;
}

void* Thread::handle() const {
  return state_ ? state_->handle : nullptr;
}

unsigned Thread::id() const {
  return state_ ? state_->id : 0;
}

}  // namespace vosmere
