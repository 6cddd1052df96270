// Thread, a thread of the system.
#pragma once

#include <chrono>
#include <memory>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

struct _SECURITY_ATTRIBUTES;  // the system's own, on Windows

namespace vosmere {

/// One thread, or none before Create. Only the thread that owns the object may use it. The object
/// may be destroyed before the thread ends.
class Thread {
 public:
  using Clock = std::chrono::steady_clock;
  using Entry = unsigned(VOSMERE_THREAD_CALL*)(void*);

  static constexpr ULONG kNoThread = 0xFFFFFFFF;

  Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;
  ~Thread();

  /// Creates a suspended thread that will run `entry(argument)` on a stack of at least `stackSize`
  /// bytes (0: the platform's default). `security` is used on Windows only. False, without a
  /// thread, when the platform cannot create one. An earlier thread of the object must have ended.
  bool Create(Entry entry, void* argument, unsigned stackSize, _SECURITY_ATTRIBUTES* security);

  /// Lets the thread run and returns its previous suspend count: 1 when this call lets it run, 0
  /// when it ran already, kNoThread when there is no thread.
  ULONG Resume();

  /// Terminates the thread and waits until it has ended. False where the platform cannot terminate
  /// a running thread. A thread that was never resumed always ends, without running its entry.
  bool Terminate();

  /// Waits for the thread to end and returns whether it has ended before the deadline. True when
  /// there is no thread; false at once on the thread itself.
  bool Wait(Clock::time_point deadline);

  /// On Windows the thread's handle, which only Terminate closes; elsewhere the system's number of
  /// the thread, which fits an int. Null when there is no thread.
  void* handle() const;
  /// The system's number of the thread; 0 when there is no thread.
  unsigned id() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace vosmere
