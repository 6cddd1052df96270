// A common interface to three timer services: this library's scheduler and its peers. Each runs
// numbered jobs (from 0) at their due times, on a thread of its own.
#pragma once

#include <asio.hpp>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "vosmere/sched/schedule_thread.h"
#include "vosmere/sched/time_event.h"

namespace vosmere::bench {

using Steady = std::chrono::steady_clock;
using Fired = std::function<void(std::size_t)>;

/// A due time in whole milliseconds of the system clock, which the events of this library use, and
/// the same time for services that use the steady clock.
struct Due {
  std::chrono::milliseconds day;
  Steady::time_point steady;
};

/// The time `milliseconds` from now, rounded down to whole milliseconds of the system clock.
inline Due DueIn(std::chrono::milliseconds milliseconds) {
  using namespace std::chrono;
  const auto day = system_clock::now().time_since_epoch();
  const auto steady = Steady::now();
  const auto due = floor<std::chrono::milliseconds>(day) + milliseconds;
  return {due, steady + duration_cast<Steady::duration>(due - day)};
}

class VosmereTimers {
 public:
  VosmereTimers(const std::vector<Due>& dues, Fired fired) : fired_(std::move(fired)) {
    for (const Due& due : dues) events_.emplace_back(this).SetDue(due);
  }
  void SetDue(std::size_t job, const Due& due) { events_[job].SetDue(due); }
  void Start() { scheduler_.CreateThread(0, 0, nullptr); }
  void Insert(std::size_t job) { scheduler_.InsertTimeEvent(&events_[job]); }
  /// Removes all jobs and reports each as run.
  void TakeAll() {
    while (CTimeEvent* const event = scheduler_.GetHeadEvent())
      fired_(static_cast<Event*>(event) - &events_[0]);
  }

 private:
  class Event : public CTimeEvent {
   public:
    explicit Event(VosmereTimers* timers) : timers_(timers) {}
    void SetDue(const Due& due) {
      SetTime(static_cast<LONG>(due.day.count() / 1000), static_cast<int>(due.day.count() % 1000));
    }
    void DoEvent() override { timers_->fired_(this - timers_->events_.data()); }

   private:
    VosmereTimers* timers_;
  };

  Fired fired_;
  std::vector<Event> events_;
  CScheduleThread scheduler_;
};

/// A typical hand-written service: a std::multimap and a condition variable.
class MapTimers {
 public:
  MapTimers(const std::vector<Due>& dues, Fired fired) : fired_(std::move(fired)), dues_(dues) {}
  ~MapTimers() {
    if (!thread_.joinable()) return;
    {
      const std::lock_guard lock(mutex_);
      stop_ = true;
    }
    changed_.notify_one();
    thread_.join();
  }
  void SetDue(std::size_t job, const Due& due) { dues_[job] = due; }
  void Start() {
    thread_ = std::thread([this] { Run(); });
  }
  void Insert(std::size_t job) {
    const std::lock_guard lock(mutex_);
    const auto place = jobs_.emplace(dues_[job].steady, job);
    if (place == jobs_.begin()) changed_.notify_one();
  }
  void TakeAll() {
    for (;;) {
      const std::lock_guard lock(mutex_);
      if (jobs_.empty()) return;
      fired_(jobs_.begin()->second);
      jobs_.erase(jobs_.begin());
    }
  }

 private:
  void Run() {
    std::unique_lock lock(mutex_);
    while (!stop_) {
      if (jobs_.empty()) {
        changed_.wait(lock);
      } else if (jobs_.begin()->first > Steady::now()) {
        changed_.wait_until(lock, jobs_.begin()->first);
      } else {
        const std::size_t job = jobs_.begin()->second;
        jobs_.erase(jobs_.begin());
        fired_(job);
      }
    }
  }

  Fired fired_;
  std::vector<Due> dues_;
  std::multimap<Steady::time_point, std::size_t> jobs_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool stop_ = false;
  std::thread thread_;
};

/// One asio::steady_timer per job.
class AsioTimers {
 public:
  AsioTimers(const std::vector<Due>& dues, Fired fired) : fired_(std::move(fired)), dues_(dues) {
    for (std::size_t i = 0; i < dues.size(); ++i) timers_.emplace_back(context_);
  }
  ~AsioTimers() {
    context_.stop();
    if (thread_.joinable()) thread_.join();
  }
  void SetDue(std::size_t job, const Due& due) { dues_[job] = due; }
  void Start() {
    work_.emplace(context_.get_executor());
    thread_ = std::thread([this] { context_.run(); });
  }
  void Insert(std::size_t job) {
    timers_[job].expires_at(dues_[job].steady);
    timers_[job].async_wait([this, job](const asio::error_code& error) {
      if (!error) fired_(job);
    });
  }
  /// Runs the jobs that are due. The benchmarks call this only when all are.
  void TakeAll() { context_.poll(); }

 private:
  Fired fired_;
  std::vector<Due> dues_;
  asio::io_context context_;
  std::deque<asio::steady_timer> timers_;
  std::optional<asio::executor_work_guard<asio::io_context::executor_type>> work_;
  std::thread thread_;
};

}  // namespace vosmere::bench
