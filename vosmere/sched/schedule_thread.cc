// CScheduleThread: the loop that sleeps until the head of the queue is due.
#include "vosmere/sched/schedule_thread.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

#include "vosmere/platform/internal/clock.h"
#include "vosmere/platform/internal/signals.h"
#include "vosmere/platform/trace.h"
#include "vosmere/sched/event_queue.h"
#include "vosmere/sched/time_event.h"

namespace vosmere {
namespace {

// The numbers of the signals. Signals::Wait returns the lowest one that is set, so a busy queue
// would delay kStop; StopThread therefore also makes KeepLooping false, which every pass checks.
enum { kQueueChanged, kStop };

using Clock = Signals::Clock;

// The longest single wait. Deadlines are on the steady clock and events on the time of day, so only
// waking up now and then shows that the time of day was set forward.
constexpr std::chrono::minutes kLongestNap{1};

/// Milliseconds until the event can be due, at least 1; the event is later than now. An event with
/// negative milliseconds is due at the start of its second, because seconds are compared first.
std::int64_t MillisecondsLeft(const CTimeEvent& event, const ClockMoment& now) {
  LONG seconds;
  int milliseconds;
  event.GetTime(&seconds, &milliseconds);
  const std::int64_t left = (std::int64_t{seconds} - now.seconds) * 1000 - now.milliseconds;
  return left + milliseconds > 0 ? left + milliseconds : left;
}

// An exception is stopped here: in a thread it would terminate the program.
void DoJob(CTimeEvent* event) {
  try {
    event->DoEvent();
  } catch (...) {
    Trace("CScheduleThread: a job let an exception out\n");
  }
}

}  // namespace

/// Signals and queue outlive the scheduler where a job destroys it.
struct CScheduleThread::State {
  Clock::time_point deadline = Clock::time_point::max();
  std::shared_ptr<Signals> signals = std::make_shared<Signals>(2);
  std::shared_ptr<CTimeEventQueue> queue = std::make_shared<CTimeEventQueue>();
};

CScheduleThread::CScheduleThread() : state_(new State) {
  SetWaker([](CBaseThread* self) { static_cast<CScheduleThread*>(self)->StopThread(); });
}

CScheduleThread::~CScheduleThread() {
  StopAndWait();
}

void CScheduleThread::InsertTimeEvent(CTimeEvent* event) {
  ChangeQueue([&](CTimeEventQueue& queue, bool* headChanged) {
    *headChanged = queue.InsertEvent(event);
    return true;
  });
}

bool CScheduleThread::InsertOrReplaceEvent(CTimeEvent* event, bool onlyIfEarlier,
                                           CTimeEvent** replaced) {
  return ChangeQueue([&](CTimeEventQueue& queue, bool* headChanged) {
    return queue.InsertOrReplaceEvent(event, onlyIfEarlier, replaced, headChanged);
  });
}

bool CScheduleThread::InsertAndReplaceEvent(CTimeEvent* event, CTimeEvent** replaced) {
  return ChangeQueue([&](CTimeEventQueue& queue, bool* headChanged) {
    return queue.InsertAndReplaceEvent(event, replaced, headChanged);
  });
}

CTimeEventQueue* CScheduleThread::GetQueue() const {
  return state_->queue.get();
}

CTimeEvent* CScheduleThread::GetHeadEvent() {
  const SynchGuard guard(*state_->queue);
  CTimeEvent* const event = state_->queue->GetPeepHeadEvent();
  state_->queue->RemoveHead();
  return event;
}

void CScheduleThread::StopThread() {
  StopDoWorkLoop();
  state_->signals->Set(kStop);
}

void CScheduleThread::CheckEvent() {
  const std::shared_ptr<CTimeEventQueue> queue = state_->queue;  // a job may destroy this object
  {
    const SynchGuard guard(*queue);
    if (CTimeEvent* const event = queue->GetPeepHeadEvent()) {
      if (SleepUntilDue(*event)) {
        ResetQueueChanged();
      } else {
        // Queue-changed stays set, so the next pass checks the new head at once.
        queue->RemoveHead();
        DoJob(event);
      }
      return;
    }
    SetWaitTimeout(-1);
  }
  ResetQueueChanged();
  // An event inserted since the lock was released has lost its signal to the reset.
  const SynchGuard guard(*queue);
  if (queue->GetPeepHeadEvent()) SetQueueChanged();
}

void CScheduleThread::DoWork() {
  const CBaseThread* const current = Current();
  SharpenWaits();
  while (KeepLooping()) {
    switch (state_->signals->Wait(state_->deadline)) {
      case kQueueChanged:
        SetWaitTimeout(waitTimeout_);
        CheckEvent();
        if (Current() != current) return;  // a job has destroyed the scheduler
        break;
      case kStop: StopDoWorkLoop(); break;
      default: SetQueueChanged(); break;
    }
  }
}

void CScheduleThread::SetQueueChanged() {
  state_->signals->Set(kQueueChanged);
}

void CScheduleThread::ResetQueueChanged() {
  state_->signals->Reset(kQueueChanged);
}

void CScheduleThread::SetWaitTimeout(int milliseconds) {
  waitTimeout_ = milliseconds;
  state_->deadline = milliseconds < 0 ? Clock::time_point::max()
                                      : Clock::now() + std::chrono::milliseconds(milliseconds);
}

/// Runs `change(queue, &headChanged)` under the lock, and signals a new head. The scheduler is
/// woken up after the lock is released, because it takes that lock first. The signals are kept
/// alive meanwhile: once the lock is free, a job may destroy this object.
template <class Change>
bool CScheduleThread::ChangeQueue(Change change) {
  std::shared_ptr<Signals> signals;
  bool done;
  {
    const SynchGuard guard(*state_->queue);
    bool headChanged;
    done = change(*state_->queue, &headChanged);
    if (done && headChanged) {
      signals = state_->signals;
      signals->Mark(kQueueChanged);
    }
  }
  if (signals) signals->Wake();
  return done;
}

/// Sets the end of the sleep; false when the event is due already. A long sleep is split into parts
/// of kLongestNap, each followed by another step. The clock cuts the current time to milliseconds,
/// so the microseconds are subtracted to wake up on time rather than up to a millisecond late.
bool CScheduleThread::SleepUntilDue(const CTimeEvent& event) {
  const ClockMoment now = ClockNow();
  const Clock::time_point asleep = Clock::now();
  if (event.CompareTime(now.seconds, now.milliseconds) <= 0) return false;
  const std::int64_t left = MillisecondsLeft(event, now);
  constexpr std::int64_t kLongest = std::numeric_limits<int>::max();
  waitTimeout_ = static_cast<int>(std::min(left, kLongest));
  state_->deadline =
      asleep + std::min<Clock::duration>(std::chrono::milliseconds(waitTimeout_), kLongestNap) -
      std::chrono::microseconds(now.microseconds);
  return true;
}

}  // namespace vosmere
