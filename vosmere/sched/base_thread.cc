// CBaseThread on top of the platform's Thread and Signals.
#include "vosmere/sched/base_thread.h"

#include <atomic>
#include <chrono>
#include <cstdint>

#include "vosmere/platform/internal/signals.h"
#include "vosmere/platform/internal/thread.h"

namespace vosmere {
namespace {

/// One call of Run on the calling thread. Each thread keeps its calls in a list, because a hook may
/// itself call Start with another object. The destructor of an object clears its entries here, so
/// that Run can tell without touching the object whether a hook has destroyed it.
struct Running {
  const CBaseThread* object;  // null when a hook has destroyed it
  Running* const outer = innermost;

  explicit Running(const CBaseThread* runs) : object(runs) { innermost = this; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() { innermost = outer; }

  static thread_local Running* innermost;
};

thread_local Running* Running::innermost = nullptr;

}  // namespace

struct CBaseThread::Platform {
  Thread thread;
  Signals startGate{1};
  std::atomic<int> loopTimeout = -1;
  std::atomic<bool> active = false;
  std::atomic<bool> killed = false;
  std::atomic<bool> keepLooping = true;
};

CBaseThread::CBaseThread() : platform_(new Platform) {
  OpenStartGate();
}

CBaseThread::~CBaseThread() {
  for (Running* run = Running::innermost; run; run = run->outer)
    if (run->object == this) run->object = nullptr;
}

void CBaseThread::KillThread() {
  if (!IsActive()) return;
  // Before the start gate opens, so that the thread skips the remaining hooks.
  platform_->killed = true;
  // A thread cannot terminate itself here and return, and only Windows terminates a running thread.
  if (RunsHere() || !platform_->thread.Terminate()) RequestStop();
  handle_ = nullptr;
  platform_->active = false;
}

int CBaseThread::CreateThread(ULONG flags, unsigned int stackSize, SECURITY_ATTRIBUTES* security) {
  Thread& thread = platform_->thread;
  if (!WaitForEnd(0)) return 0;
  // Created suspended in any case: the members below have to be set before the hooks run.
  thread.Create(Start, this, stackSize, security);
  handle_ = thread.handle();
  threadId_ = thread.id();
  platform_->killed = false;
  platform_->active = true;
  // Resumed last: the thread may end, and destroy this object, before this call returns.
  const int result = static_cast<int>(reinterpret_cast<std::intptr_t>(handle_));
  if (!(flags & kCreateSuspended)) thread.Resume();
  return result;
}

unsigned int VOSMERE_THREAD_CALL CBaseThread::Start(void* object) {
  return static_cast<unsigned int>(static_cast<CBaseThread*>(object)->Run());
}

int CBaseThread::Run() {
  Running run(this);
  PrevWork();
  if (run.object) platform_->startGate.Wait();
  if (run.object && !platform_->killed) DoWork();
  if (run.object && !platform_->killed) PostWork();
  // The last access: another thread may then destroy the object.
  if (run.object) platform_->active = false;
  return 0;
}

ULONG CBaseThread::ResumeThread() {
  return platform_->thread.Resume();
}

void CBaseThread::StopDoWorkLoop() {
  platform_->keepLooping = false;
}

bool CBaseThread::KeepLooping() const {
  return platform_->keepLooping;
}

void CBaseThread::SetLoopTimeout(int milliseconds) {
  platform_->loopTimeout = milliseconds;
}

int CBaseThread::GetLoopTimeout() const {
  return platform_->loopTimeout;
}

bool CBaseThread::IsActive() const {
  return platform_->active;
}

bool CBaseThread::WaitForEnd(int milliseconds) {
  using Clock = Thread::Clock;
  return platform_->thread.Wait(milliseconds < 0
                                    ? Clock::time_point::max()
                                    : Clock::now() + std::chrono::milliseconds(milliseconds));
}

void CBaseThread::PrevWork() {}

void CBaseThread::PostWork() {}

void CBaseThread::CloseStartGate() {
  platform_->startGate.Reset(0);
}

void CBaseThread::OpenStartGate() {
  platform_->startGate.Set(0);
}

void CBaseThread::StopAndWait() {
  if (RunsHere()) return;
  RequestStop();
  // A thread that is still suspended would never end.
  ResumeThread();
  WaitForEnd(-1);
}

const CBaseThread* CBaseThread::Current() {
  return Running::innermost ? Running::innermost->object : nullptr;
}

bool CBaseThread::RunsHere() const {
  for (const Running* run = Running::innermost; run; run = run->outer)
    if (run->object == this) return true;
  return false;
}

void CBaseThread::RequestStop() {
  StopDoWorkLoop();
  if (wake_) wake_(this);
  OpenStartGate();
}

}  // namespace vosmere
