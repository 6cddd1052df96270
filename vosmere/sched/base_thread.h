// CBaseThread, the base class of the library's worker threads.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

struct _SECURITY_ATTRIBUTES;

namespace vosmere {

/// The Windows structure of that name. It is not declared on other systems, where callers pass
/// null.
using SECURITY_ATTRIBUTES = ::_SECURITY_ATTRIBUTES;

/// Creation flag: the new thread stays suspended until ResumeThread. The value is that of Windows.
inline constexpr ULONG kCreateSuspended = 4;

/// A worker thread. A subclass supplies the work as three hooks, which run on the new thread in
/// this order: PrevWork, then, once the start gate is open, DoWork, then PostWork. An exception
/// that leaves a hook terminates the program, as with any thread.
///
/// The destructor neither stops the thread nor waits for it, so the object has to outlive its
/// thread: destroy it when IsActive has become false or WaitForEnd has returned true. The thread
/// itself may destroy its object within a hook; nothing of the object is touched afterwards, and
/// the remaining hooks do not run. One object runs one thread, and a stopped object is not started
/// again.
///
/// IsActive and StopDoWorkLoop may be called from any thread. All other public operations belong to
/// the thread that owns the object.
class VOSMERE_API CBaseThread {
 public:
  /// Throws std::bad_alloc when memory or the system's event objects run out.
  CBaseThread();
  CBaseThread(const CBaseThread&) = delete;
  CBaseThread& operator=(const CBaseThread&) = delete;
  virtual ~CBaseThread();

  /// Ends the thread by force on Windows and by request elsewhere. Either way the object is not
  /// active afterwards. Does nothing unless it was active.
  ///
  /// On Windows the thread is terminated wherever it is, with exit code 0 and without PostWork, and
  /// its handle is closed. A lock that it holds stays locked for ever, and memory that it allocated
  /// is leaked.
  ///
  /// On other systems, and when the thread calls this itself, it is a request: KeepLooping becomes
  /// false, the start gate opens and PostWork will not run. The thread ends by itself and so
  /// releases its locks. Call WaitForEnd before destroying the object.
  virtual void KillThread();

  /// Starts the thread. `flags` is 0 or kCreateSuspended. `stackSize` is the minimum in bytes, 0
  /// for the platform's default. `security` is used on Windows only and may be null. Returns the
  /// handle as a number, which is never 0. Returns 0 when the platform cannot create a thread, and
  /// while an earlier thread of the object has not ended; in that case nothing changes.
  /// Intended: the object is active afterwards even if no thread could be created, so test the
  /// result rather than IsActive.
  int CreateThread(ULONG flags, unsigned int stackSize, SECURITY_ATTRIBUTES* security);

  /// The thread's entry function: runs the hooks of `object`, a CBaseThread, and returns 0. It may
  /// also be called on a thread that was created by other means, but KillThread, WaitForEnd and
  /// IsActive then do not apply to that thread.
  static unsigned int VOSMERE_THREAD_CALL Start(void* object);

  /// Resumes a thread that was created suspended. Returns the previous suspend count: 1 when this
  /// call lets the thread run, 0 when it ran already, 0xFFFFFFFF when there is no thread.
  ULONG ResumeThread();

  /// Makes KeepLooping return false, which ends the loop of a subclass at its next check. It cannot
  /// be undone.
  void StopDoWorkLoop();

  /// How long the loop of a subclass may wait at a time, in milliseconds; -1, the default, means
  /// without limit. This class only stores the value.
  void SetLoopTimeout(int milliseconds);

  /// True from CreateThread until the thread has run its hooks or is killed. Once it has become
  /// false without KillThread, the thread does not touch the object any more.
  bool IsActive() const;

  /// On Windows the thread's handle. Only KillThread closes it; the caller closes the handle of a
  /// thread that has ended by itself. Elsewhere the system's thread number. Null before
  /// CreateThread and after KillThread.
  void* GetHandle() const { return handle_; }
  /// The system's thread number, which remains after KillThread; 0 before CreateThread.
  unsigned int GetThreadID() const { return threadId_; }

  /// Waits up to `milliseconds` (-1: without limit) for the thread to end, and returns whether it
  /// has ended. True when there is no thread. False at once when called on the thread itself. A
  /// thread that was never resumed does not end.
  bool WaitForEnd(int milliseconds);

 protected:
  /// Runs on the new thread before the start gate. Does nothing by default.
  virtual void PrevWork();
  /// The work. A loop in it should run only while KeepLooping returns true.
  virtual void DoWork() = 0;
  /// Runs after DoWork, unless the thread was killed. Does nothing by default.
  virtual void PostWork();

  /// The thread's body: PrevWork, the start gate, DoWork, PostWork. Returns the thread's exit code,
  /// 0.
  int Run();

  bool KeepLooping() const;
  int GetLoopTimeout() const;

  /// The start gate is open by default. While it is closed, the thread waits between PrevWork and
  /// DoWork.
  void CloseStartGate();
  void OpenStartGate();

  /// Sets a function that wakes a sleeping DoWork so that it can end. StopAndWait calls it, and so
  /// does KillThread if killing is a request, whether or not the thread sleeps. Null, the default,
  /// does nothing. Call this before the thread starts.
  void SetWaker(void (*wake)(CBaseThread* self)) { wake_ = wake; }

  /// Ends the loop and waits for the thread, even if it is suspended or waits at the start gate. No
  /// hook is interrupted. Does nothing on the thread itself.
  ///
  /// For destructors: each subclass whose thread may still run calls it first in its own
  /// destructor. Later would be too late, because the object's virtual operations are then no
  /// longer those of the subclass.
  void StopAndWait();

  /// The object whose hooks the calling thread is running; the innermost one when Start is nested.
  /// Null on any other thread, and as soon as a hook has destroyed the object.
  static const CBaseThread* Current();

 private:
  struct Platform;

  /// Whether the calling thread is running a hook of this object.
  bool RunsHere() const;
  /// Asks the loop to end, and wakes the thread up if it sleeps or waits at the start gate.
  void RequestStop();

  OwnedPointer<Platform> platform_;
  void (*wake_)(CBaseThread* self) = nullptr;
  void* handle_ = nullptr;
  unsigned int threadId_ = 0;
};

}  // namespace vosmere
