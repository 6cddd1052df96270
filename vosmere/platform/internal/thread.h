// Threads of the system.
#pragma once

#include <chrono>
#include <memory>

#include "vosmere/base/types.h"

struct _SECURITY_ATTRIBUTES;  // the system's own, on Windows

namespace vosmere {

/// One thread, or none yet. Used by the thread that owns the object; the object may end before the
/// thread does.
class Thread {
 public:
  using Clock = std::chrono::steady_clock;
  using Entry = unsigned (*)(void*);

  static constexpr ULONG kNoThread = 0xFFFFFFFF;

  Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;
  ~Thread();

  /// A suspended thread that will run `entry(argument)` on a stack of at least so many bytes (0:
  /// the platform's usual). Security attributes count on Windows only. False, without a thread,
  /// when the platform cannot. An earlier thread of the object has ended.
  bool Create(Entry entry, void* argument, unsigned stackSize, _SECURITY_ATTRIBUTES* security);

  /// How often the thread was suspended until now: 1 when this call lets it run, 0 when it ran
  /// already. kNoThread without one.
  ULONG Resume();

  /// Ends the thread where it stands and waits until it has ended. False where that cannot be done
  /// to a thread that runs; one that was never resumed always ends, without having run its entry.
  bool Terminate();

  /// Whether the thread has ended by then. True without one; false at once on the thread itself.
  bool Wait(Clock::time_point deadline);

  /// On Windows the thread's handle, which only Terminate closes; elsewhere the system's number of
  /// the thread. Fits an int. Null without a thread.
  void* handle() const;
  /// The system's number of the thread; 0 without one.
  unsigned id() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace vosmere
