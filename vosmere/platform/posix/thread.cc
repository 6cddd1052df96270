// Thread with pthreads, which a latch and two events make suspendable.
#include "vosmere/platform/internal/thread.h"

#include <limits.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <latch>
#include <new>
#include <utility>

#include "vosmere/platform/internal/signals.h"

namespace vosmere {

// Shared by the object and the thread, which may outlive the object.
struct Thread::State {
  Entry entry;
  void* argument;
  unsigned id = 0;
  std::latch born{1};      // released when `id` is known
  bool abandoned = false;  // ends without running the entry; set before `resumed`
  Signals resumed{1};
  Signals ended{1};

  // Used by the owner only.
  pthread_t thread{};
  bool suspended = true;
  bool joined = false;

  State(Entry runs, void* with) : entry(runs), argument(with) {}
  static void* Body(void* shared);
};

/// The thread's start routine. pthreads cannot create a suspended thread, so it waits for Resume
/// itself.
void* Thread::State::Body(void* shared) {
  const std::unique_ptr<std::shared_ptr<State>> state(static_cast<std::shared_ptr<State>*>(shared));
  State& self = **state;
  self.id = static_cast<unsigned>(::gettid());
  self.born.count_down();
  self.resumed.Wait();
  if (!self.abandoned) self.entry(self.argument);
  self.ended.Set(0);
  return nullptr;
}

namespace {

/// pthreads requires at least PTHREAD_STACK_MIN, and some systems a multiple of the page size.
bool SetStackSize(pthread_attr_t* attributes, unsigned stackSize) {
  if (stackSize == 0) return true;
  constexpr std::size_t kPage = 4096;
  const std::size_t size = std::max<std::size_t>(stackSize, PTHREAD_STACK_MIN);
  return pthread_attr_setstacksize(attributes, (size + kPage - 1) / kPage * kPage) == 0;
}

}  // namespace

Thread::Thread() = default;

Thread::~Thread() {
  if (state_ && !state_->joined) pthread_detach(state_->thread);
}

bool Thread::Create(Entry entry, void* argument, unsigned stackSize, _SECURITY_ATTRIBUTES*) try {
  state_.reset();
  auto state = std::make_shared<State>(entry, argument);
  auto shared = std::make_unique<std::shared_ptr<State>>(state);
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  const bool created = SetStackSize(&attributes, stackSize) &&
                       pthread_create(&state->thread, &attributes, State::Body, shared.get()) == 0;
  pthread_attr_destroy(&attributes);
  if (!created) return false;
  static_cast<void>(shared.release());  // the thread frees it
  // The id is known only to the new thread.
  state->born.wait();
  state_ = std::move(state);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

ULONG Thread::Resume() {
  const std::shared_ptr<State> state = state_;  // the thread may destroy this object at once
  if (!state) return kNoThread;
  const bool suspended = std::exchange(state->suspended, false);
  if (suspended) state->resumed.Set(0);
  return suspended;
}

bool Thread::Terminate() {
  if (!state_) return true;
  if (state_->suspended) {
    // The thread still has to run in order to end; it then skips the entry.
    state_->abandoned = true;
    Resume();
  } else if (state_->ended.Wait(Clock::now()) == Signals::kNone) {
    return false;
  }
  return Wait(Clock::time_point::max());
}

bool Thread::Wait(Clock::time_point deadline) {
  if (!state_ || state_->joined) return true;
  if (pthread_equal(state_->thread, pthread_self())) return false;
  if (state_->ended.Wait(deadline) == Signals::kNone) return false;
  state_->joined = pthread_join(state_->thread, nullptr) == 0;
  return true;
}

void* Thread::handle() const {
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id()));
}

unsigned Thread::id() const {
  return state_ ? state_->id : 0;
}

}  // namespace vosmere
