#include "vosmere/sched/base_thread.h"

#include <chrono>
#include <cstdint>

#include "vosmere/platform/internal/signals.h"
#include "vosmere/platform/internal/thread.h"

namespace vosmere {
namespace {

thread_local const CBaseThread* current = nullptr;

}  // namespace

struct CBaseThread::Platform {
  Thread thread;
  Signals startGate{1};
  std::stop_source stop;
};

CBaseThread::CBaseThread() : platform_(std::make_unique<Platform>()) {
  OpenStartGate();
}

CBaseThread::~CBaseThread() {
  if (current == this) current = nullptr;
}

void CBaseThread::KillThread() {
  if (!IsActive()) return;
  if (current == this || !platform_->thread.Terminate()) RequestStop();
  handle_ = nullptr;
  active_ = false;
}

int CBaseThread::CreateThread(ULONG flags, unsigned int stackSize, SECURITY_ATTRIBUTES* security) {
  Thread& thread = platform_->thread;
  if (!WaitForEnd(0)) return 0;
  thread.Create(Start, this, stackSize, security);
  handle_ = thread.handle();
  threadId_ = thread.id();
  active_ = true;
  // Not before: it may end, and its object with it, before this thread goes on.
  const int result = static_cast<int>(reinterpret_cast<std::intptr_t>(handle_));
  if (!(flags & kCreateSuspended)) thread.Resume();
  return result;
}

unsigned int CBaseThread::Start(void* object) {
  return static_cast<unsigned int>(static_cast<CBaseThread*>(object)->Run());
}

// A hook may have destroyed the object, which `current` tells; a kill that was a request has
// cleared `active_`.
int CBaseThread::Run() {
  current = this;
  PrevWork();
  if (!current) return 0;
  platform_->startGate.Wait();
  if (IsActive()) DoWork();
  if (!current) return 0;
  if (IsActive()) PostWork();
  if (!current) return 0;
  current = nullptr;
  active_ = false;  // the last touch: whoever sees it may destroy the object
  return 0;
}

ULONG CBaseThread::ResumeThread() {
  return platform_->thread.Resume();
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

std::stop_token CBaseThread::GetStopToken() const {
  return platform_->stop.get_token();
}

void CBaseThread::StopAndWait() {
  if (current == this) return;
  RequestStop();
  ResumeThread();
  WaitForEnd(-1);
}

const CBaseThread* CBaseThread::Current() {
  return current;
}

void CBaseThread::RequestStop() {
  StopDoWorkLoop();
  platform_->stop.request_stop();
  OpenStartGate();
}

}  // namespace vosmere
