// Timed jobs: run a function at a given time, or periodically, on the scheduler's thread.
//
//   Scheduler scheduler;
//   const Job poll = scheduler.Every(20min, [&] { Poll(); });    // until `poll` is destroyed
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <utility>

#include "vosmere/base/lock.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/cpp/dates.h"
#include "vosmere/sched/event_queue.h"
#include "vosmere/sched/schedule_thread.h"
#include "vosmere/sched/time_event.h"

namespace vosmere {

namespace detail {

using JobTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds>;

/// The time `delay` from now. Delays are limited to 100 years, which exceeds the library's range of
/// times, so that the sum does not overflow.
inline JobTime FromNow(std::chrono::milliseconds delay) {
  constexpr std::chrono::milliseconds kLongest = std::chrono::years(100);
  const auto now = std::chrono::ceil<std::chrono::milliseconds>(std::chrono::system_clock::now());
  return now + (delay < kLongest ? delay : kLongest);
}

class JobEvent;

class JobThread : public CScheduleThread {
 public:
  ~JobThread() override { Stop(); }
  void Stop() {
    stopped_ = true;
    StopThread();
    StopAndWait();
  }
  bool IsStopped() const { return stopped_; }
  /// Queues a job. False when memory runs out.
  inline bool Add(JobEvent& job);
  /// Removes a job from the queue. Waits for a running job.
  inline void Take(JobEvent& job);

 private:
  std::atomic<bool> stopped_ = false;
};

/// A job in the queue. It is changed only with the queue's lock held; the thread also holds the
/// lock while it runs a job. Every job keeps the queue alive, so that a handle that outlives its
/// scheduler still takes that lock, and waits for those who look at the job, before the job goes.
class JobEvent : public CTimeEvent, public std::enable_shared_from_this<JobEvent> {
 public:
  using Period = std::chrono::milliseconds;

  /// A period of 0 means that the job runs once.
  JobEvent(std::shared_ptr<JobThread> thread, JobTime due, Period period,
           std::function<void()> work)
      : thread_(std::move(thread)), due_(due), period_(period), work_(std::move(work)) {}

  bool IsPending() const { return pending_ && !thread_->IsStopped(); }
  bool IsTheSameEvent(CTimeEvent* other) override { return other == substitute_; }
  void DoEvent() override {
    const std::shared_ptr<JobEvent> self = shared_from_this();  // the work may destroy its handle
    const Finish finish{*this};                                 // also when the work throws
    work_();
  }
  /// Sets the time of the event and marks the job as pending, before it is queued.
  void Arm() {
    const auto second = std::chrono::floor<std::chrono::seconds>(due_);
    SetTime(second < sys_seconds() ? 0 : ToStoredTime(second).value_or(INT32_MAX),
            static_cast<int>((due_ - second).count()));
    pending_ = true;
  }
  void Cancel() {
    thread_->Take(*this);
    pending_ = false;
  }

 private:
  friend class JobThread;
  struct Finish {
    JobEvent& job;
    ~Finish() { job.OnDone(); }
  };

  void OnDone() {
    if (!pending_ || period_ == Period::zero() || thread_->IsStopped()) {
      pending_ = false;
      return;
    }
    due_ += period_;
    if (const JobTime now = FromNow({}); due_ < now) due_ = now;
    Arm();
    thread_->InsertTimeEvent(this);
  }

  std::shared_ptr<JobThread> thread_;
  JobTime due_;
  Period period_;
  std::function<void()> work_;
  CTimeEvent* substitute_ = nullptr;  // the event that replaces this one in Take
  std::atomic<bool> pending_ = false;
};

inline bool JobThread::Add(JobEvent& job) {
  const SynchGuard guard(*GetQueue());
  CTimeEvent* replaced;
  return InsertAndReplaceEvent(&job, &replaced) && GetQueue()->GetPeepHeadEvent();
}

/// The queue can only remove its head. It does replace an event by one that IsTheSameEvent accepts,
/// so the job is replaced by an event with the earliest possible time, which is then the head.
inline void JobThread::Take(JobEvent& job) {
  struct Substitute : CTimeEvent {
    Substitute() { SetTime(-1, 0); }
    void DoEvent() override {}
  } substitute;
  CTimeEventQueue& queue = *GetQueue();
  const SynchGuard guard(queue);  // waits for a job that runs
  if (!job.pending_) return;
  job.substitute_ = &substitute;
  CTimeEvent* replaced;
  bool headChanged;
  queue.InsertAndReplaceEvent(&substitute, &replaced, &headChanged);
  if (queue.GetPeepHeadEvent() == &substitute) queue.RemoveHead();
  job.substitute_ = nullptr;
}

}  // namespace detail

/// The handle of a job. Destroying the handle, or assigning another job to it, cancels the job: it
/// will not start again. If it is running, the call waits for it to end, except when it is made
/// from within the job. An empty or moved-from handle has no job. A handle may outlive its
/// scheduler.
class [[nodiscard]] Job {
 public:
  Job() = default;
  Job(Job&&) noexcept = default;
  Job& operator=(Job&& other) noexcept {
    std::swap(event_, other.event_);
    other.Cancel();
    return *this;
  }
  ~Job() { Cancel(); }

  void Cancel() {
    if (const std::shared_ptr<detail::JobEvent> event = std::exchange(event_, nullptr))
      event->Cancel();
  }
  /// Whether the job is running or will still run.
  bool IsPending() const { return event_ && event_->IsPending(); }

 private:
  friend class Scheduler;
  explicit Job(std::shared_ptr<detail::JobEvent> event) : event_(std::move(event)) {}

  std::shared_ptr<detail::JobEvent> event_;
};

/// A thread that runs jobs one after the other, ordered by their due times, which follow the system
/// clock. Thread-safe, and usable from within jobs. While a job runs, adding or cancelling another
/// one waits for it. An exception that leaves a job, and an empty function, are traced and dropped.
/// The constructor, At, After and Every may throw std::bad_alloc.
class Scheduler {
 public:
  using Time = std::chrono::system_clock::time_point;
  using Work = std::function<void()>;

  Scheduler() : thread_(std::make_shared<detail::JobThread>()) {
    runs_ = thread_->CreateThread(0, 0, nullptr) != 0;
  }
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  /// Waits for a running job, except when called from within that job. Jobs that have not started
  /// are dropped.
  ~Scheduler() { thread_->Stop(); }

  /// False if the system could not create the thread; then no job ever runs.
  bool IsRunning() const { return runs_; }

  /// Runs `work` once, at once if the time has passed.
  Job At(Time when, Work work) {
    return Start(std::chrono::ceil<std::chrono::milliseconds>(when), {}, std::move(work));
  }
  Job After(std::chrono::milliseconds delay, Work work) {
    return Start(detail::FromNow(delay), {}, std::move(work));
  }
  /// Runs `work` after each period, which is at least one millisecond. A late run starts at once;
  /// missed runs are not repeated.
  Job Every(std::chrono::milliseconds period, Work work) {
    if (period < std::chrono::milliseconds(1)) period = std::chrono::milliseconds(1);
    return Start(detail::FromNow(period), period, std::move(work));
  }

 private:
  Job Start(detail::JobTime due, std::chrono::milliseconds period, Work work) {
    auto event = std::make_shared<detail::JobEvent>(thread_, due, period, std::move(work));
    event->Arm();
    if (!thread_->Add(*event)) detail::ThrowNoMemory();
    return Job(std::move(event));
  }

  std::shared_ptr<detail::JobThread> thread_;
  bool runs_;
};

}  // namespace vosmere
