// Timed jobs: run a function at a time, or every so often, on a thread of the scheduler's.
//
//   Scheduler scheduler;
//   const Job poll = scheduler.Every(20min, [&] { Poll(); });    // until `poll` goes
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

/// So long from now; at most as long as times of the library reach at all, so that no sum
/// overflows.
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
    StopThread();
    StopAndWait();
  }
  /// False when there is no memory for it.
  inline bool Add(JobEvent& job);
  inline void Take(JobEvent& job);
};

/// A job in the queue. What changes it holds the queue's lock, and so does the thread while it
/// runs.
class JobEvent : public CTimeEvent, public std::enable_shared_from_this<JobEvent> {
 public:
  using Period = std::chrono::milliseconds;

  /// A period of 0 is for once.
  JobEvent(std::weak_ptr<JobThread> thread, JobTime due, Period period, std::function<void()> work)
      : thread_(std::move(thread)), due_(due), period_(period), work_(std::move(work)) {}

  bool IsPending() const { return pending_; }
  bool IsTheSameEvent(CTimeEvent* other) override { return other == substitute_; }
  void DoEvent() override {
    const std::shared_ptr<JobEvent> self = shared_from_this();  // the work may give up its handle
    const Finish finish{*this};                                 // also when it throws
    work_();
  }
  /// Gets ready to be queued.
  void Arm() {
    const auto second = std::chrono::floor<std::chrono::seconds>(due_);
    SetTime(second < sys_seconds() ? 0 : ToStoredTime(second).value_or(INT32_MAX),
            static_cast<int>((due_ - second).count()));
    pending_ = true;
  }
  void Cancel() {
    if (const std::shared_ptr<JobThread> thread = thread_.lock()) thread->Take(*this);
    pending_ = false;
  }

 private:
  friend class JobThread;
  struct Finish {
    JobEvent& job;
    ~Finish() { job.OnDone(); }
  };

  void OnDone() {
    const std::shared_ptr<JobThread> thread = thread_.lock();
    if (!pending_ || period_ == Period::zero() || !thread) {
      pending_ = false;
      return;
    }
    due_ += period_;
    if (const JobTime now = FromNow({}); due_ < now) due_ = now;
    Arm();
    thread->InsertTimeEvent(this);
  }

  std::weak_ptr<JobThread> thread_;
  JobTime due_;
  Period period_;
  std::function<void()> work_;
  CTimeEvent* substitute_ = nullptr;  // the event that is to replace this one
  std::atomic<bool> pending_ = false;
};

inline bool JobThread::Add(JobEvent& job) {
  const SynchGuard guard(*GetQueue());
  CTimeEvent* replaced;
  return InsertAndReplaceEvent(&job, &replaced) && GetQueue()->GetPeepHeadEvent();
}

/// The queue replaces an event by another that is the same job; one that is due before all others
/// is at its head then, from where it can be taken out.
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

/// A job that is to run. Destroying the handle, or giving it another job, cancels the job: it does
/// not begin any more, and one that runs is waited for, unless the handle goes within it.
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
  /// Whether it runs or is still to run.
  bool IsPending() const { return event_ && event_->IsPending(); }

 private:
  friend class Scheduler;
  explicit Job(std::shared_ptr<detail::JobEvent> event) : event_(std::move(event)) {}

  std::shared_ptr<detail::JobEvent> event_;
};

/// One thread that runs jobs one after the other, in the order in which they are due, by the time
/// of day. While a job runs, whoever adds or cancels another waits. An exception that a job lets
/// out is traced and dropped. Any thread may use it, jobs included. All that makes something throws
/// std::bad_alloc.
class Scheduler {
 public:
  using Time = std::chrono::system_clock::time_point;
  using Work = std::function<void()>;

  Scheduler() : thread_(std::make_shared<detail::JobThread>()) {
    runs_ = thread_->CreateThread(0, 0, nullptr) != 0;
  }
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  /// Waits for a job that runs, unless this is within it. What has not begun does not run any more.
  ~Scheduler() { thread_->Stop(); }

  /// False when the system had no thread to give; no job ever runs then.
  bool IsRunning() const { return runs_; }

  /// Runs `work` once, now if the time has passed.
  Job At(Time when, Work work) {
    return Start(std::chrono::ceil<std::chrono::milliseconds>(when), {}, std::move(work));
  }
  Job After(std::chrono::milliseconds delay, Work work) {
    return Start(detail::FromNow(delay), {}, std::move(work));
  }
  /// Runs `work` after each period, which is a millisecond at least. What is late runs at once, and
  /// what was missed is not made up for.
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
