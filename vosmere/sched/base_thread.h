#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

struct _SECURITY_ATTRIBUTES;

namespace vosmere {

/// The system's record of that name on Windows; elsewhere there is none, and the pointer is null.
using SECURITY_ATTRIBUTES = ::_SECURITY_ATTRIBUTES;

/// The creation flag that leaves a new thread waiting for ResumeThread; the system's own value.
inline constexpr ULONG kCreateSuspended = 4;

/// A worker thread. A subclass supplies the work as three hooks, which run on the new thread in
/// this order: PrevWork, then, once the start gate is open, DoWork, then PostWork. A hook that lets
/// an exception out ends the program, as with any thread.
///
/// The destructor neither stops the thread nor waits for it, so the object has to outlive its
/// thread: destroy it when IsActive has become false or WaitForEnd has returned true. The thread
/// itself may destroy its object within a hook; then nothing of the object is touched any more, and
/// the hooks that were still to come do not run. One object runs one thread; a stopped one is not
/// started again.
///
/// The hooks run on the new thread, everything else belongs to the owner's; IsActive and
/// StopDoWorkLoop may be called from any.
class VOSMERE_API CBaseThread {
 public:
  /// Throws std::bad_alloc.
  CBaseThread();
  CBaseThread(const CBaseThread&) = delete;
  CBaseThread& operator=(const CBaseThread&) = delete;
  virtual ~CBaseThread();

  /// On Windows the thread ends where it stands, with exit code 0 and no PostWork, and its handle
  /// is closed: a lock that it holds stays taken for ever, and what it allocated is lost.
  /// Elsewhere, and on the thread itself, it is a request: the loop is told to stop, the start gate
  /// opens, PostWork will not run, and every lock finds its owner, because the thread ends by
  /// itself; see WaitForEnd before destroying the object. Either way the object is not active
  /// afterwards. Nothing happens unless it was.
  virtual void KillThread();

  /// Starts the thread. `flags` is 0 or kCreateSuspended, `stackSize` in bytes (at least so many; 0
  /// for the platform's usual size), `security` counts on Windows only and may be null. The result
  /// is the handle as a number, which is never 0; 0 when the platform had no thread to give, and
  /// while an earlier thread of the object has not ended (nothing changes then).
  /// Intended: the object is active afterwards even if no thread could be made, so that it is the
  /// result that tells.
  int CreateThread(ULONG flags, unsigned int stackSize, SECURITY_ATTRIBUTES* security);

  /// The thread's entry: runs the object's hooks. On a thread that the program has from elsewhere
  /// it does so, too, but killing, waiting and IsActive are for those of CreateThread.
  static unsigned int Start(void* object);

  /// Lets a thread go on that was created suspended. How often it was suspended until now: 1 for
  /// the call that sets it going, 0 when it ran already, 0xFFFFFFFF without a thread.
  ULONG ResumeThread();

  /// Tells the work to end at its next look at KeepLooping. Not taken back.
  void StopDoWorkLoop();

  /// How long the loop of a subclass may wait at a time, in milliseconds; -1, as at first, is for
  /// ever. The class itself does nothing with it.
  void SetLoopTimeout(int milliseconds);

  /// From CreateThread until the thread has run its hooks or is killed. Once it has become false by
  /// itself, the thread touches the object no more.
  bool IsActive() const;

  /// On Windows the thread's handle, which KillThread alone closes: when the thread has ended by
  /// itself it is the caller's to close. Elsewhere the system's number of the thread. Null before
  /// CreateThread and after KillThread.
  void* GetHandle() const { return handle_; }
  unsigned int GetThreadID() const { return threadId_; }

  /// Waits, at most so many milliseconds (-1: for ever), until the thread has ended; whether it
  /// has. True when there is no thread, false at once on the thread itself. A thread that was never
  /// resumed does not end.
  bool WaitForEnd(int milliseconds);

 protected:
  virtual void PrevWork();
  virtual void DoWork() = 0;
  virtual void PostWork();

  /// The thread's body: PrevWork, the start gate, DoWork, PostWork. Its result is the thread's exit
  /// code, 0.
  int Run();

  bool KeepLooping() const;
  int GetLoopTimeout() const;

  /// The start gate is open at first. Closed, it holds the thread between PrevWork and DoWork.
  void CloseStartGate();
  void OpenStartGate();

  /// How a DoWork that sleeps is woken when it should end. StopAndWait calls `wake`, and so does
  /// KillThread where killing is a request, whether the thread sleeps or not. Null, as at first, is
  /// nothing. Set before the thread starts.
  void SetWaker(void (*wake)(CBaseThread* self)) { wake_ = wake; }

  /// Ends the loop and waits for the thread, also for one that is suspended or held at the gate; no
  /// hook is interrupted. Does nothing on the thread itself. For destructors: each subclass whose
  /// thread may still run calls it first thing in its own, because afterwards the object's virtual
  /// operations are no longer those of the subclass.
  void StopAndWait();

  /// The object whose hooks the calling thread runs, of several the one that was started last. Null
  /// elsewhere, and as soon as a hook has destroyed it.
  static const CBaseThread* Current();

 private:
  struct Platform;

  bool RunsHere() const;
  void RequestStop();

  OwnedPointer<Platform> platform_;
  void (*wake_)(CBaseThread* self) = nullptr;
  void* handle_ = nullptr;
  unsigned int threadId_ = 0;
};

}  // namespace vosmere
