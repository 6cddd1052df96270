// The scheduler under stress: threads that insert, replace, remove, stop and restart, a clock that
// jumps, forks, signals. The thread sanitizer watches.
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "report/section.h"
#include "vosmere/cpp.h"
#include "vosmere/platform/internal/clock.h"

namespace vosmere::report {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

struct Counts {
  std::atomic<unsigned long> started{0}, ran{0}, cancelled{0}, replaced{0}, early{0}, late{0},
      twice{0}, restarts{0}, forks{0}, forksFailed{0}, signals{0}, steps{0}, lost{0};
};
Counts counts;

std::atomic<unsigned long> caught{0};

/// A job and what is expected of it: at least `delay` passes before it runs, and it runs once.
struct Watched {
  SteadyClock::time_point earliest;
  std::atomic<int> runs{0};
};

/// The library's clock in this process is the system's, moved by steps that a thread makes:
/// backward steps delay jobs, and forward steps hasten them, so that "early" is measured by this
/// clock too.
std::atomic<long> shiftMilliseconds{0};

long NowMilliseconds() {
  return static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(
                               std::chrono::system_clock::now().time_since_epoch())
                               .count()) +
         shiftMilliseconds;
}
LONG ShiftedSeconds() {
  return static_cast<LONG>(NowMilliseconds() / 1000);
}
int ShiftedMilliseconds() {
  return static_cast<int>(NowMilliseconds() % 1000);
}

/// Jobs that are started and run, cancelled, or moved, on many threads at one scheduler.
class Stress {
 public:
  void Run(std::chrono::seconds time) {
    const auto end = SteadyClock::now() + time;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 8; ++i) threads.emplace_back([this, end, i] { Work(end, i); });
    std::thread others([this, end] { Disturb(end); });
    for (std::thread& thread : threads) thread.join();
    others.join();
  }

 private:
  struct Pending {
    std::shared_ptr<Watched> watched;
    Job job;
  };

  std::shared_ptr<Scheduler> Now() {
    const std::lock_guard lock(mutex_);
    return scheduler_;
  }

  void Work(SteadyClock::time_point end, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Pending> pending;
    while (SteadyClock::now() < end) {
      const std::shared_ptr<Scheduler> scheduler = Now();
      for (int i = 0; i < 20; ++i) Step(*scheduler, random, pending);
      if (random() % 200 == 0) Finish(pending);
    }
    Finish(pending);
  }

  void Step(Scheduler& scheduler, std::mt19937& random, std::vector<Pending>& pending) {
    if (pending.size() > 100 || (!pending.empty() && random() % 3 == 0)) {
      const std::size_t at = random() % pending.size();
      std::swap(pending[at], pending.back());
      const bool ran = pending.back().watched->runs > 0;
      pending.back().job.Cancel();
      ran ? void() : void(++counts.cancelled);
      pending.pop_back();
      return;
    }
    auto watched = std::make_shared<Watched>();
    const std::chrono::milliseconds delay(random() % 20);
    watched->earliest = SteadyClock::now() + delay;
    const auto run = [watched] {
      ++counts.ran;
      if (watched->runs++) ++counts.twice;
      if (SteadyClock::now() < watched->earliest) ++counts.early;
    };
    ++counts.started;
    Job job = scheduler.After(delay, run);
    if (random() % 4 == 0 && !pending.empty()) {  // the new one takes the place of another
      ++counts.replaced;
      pending.back() = {watched, std::move(job)};
    } else {
      pending.push_back({watched, std::move(job)});
    }
  }

  /// Each job that is still pending runs, unless its scheduler ended.
  void Finish(std::vector<Pending>& pending) {
    const auto limit = SteadyClock::now() + 20s;
    for (Pending& each : pending) {
      while (each.job.IsPending() && SteadyClock::now() < limit) std::this_thread::sleep_for(1ms);
      if (each.job.IsPending()) ++counts.lost;
    }
    pending.clear();
  }

  /// Restarts, forks, signals.
  void Disturb(SteadyClock::time_point end) {
    while (SteadyClock::now() < end) {
      std::this_thread::sleep_for(50ms);
      if (counts.restarts % 4 == 3) {
        const pid_t child = fork();
        if (child == 0) _exit(0);
        int status = 0;
        waitpid(child, &status, 0);
        ++counts.forks;
        if (status) ++counts.forksFailed;
      }
      auto fresh = std::make_shared<Scheduler>();
      std::shared_ptr<Scheduler> old;
      {
        const std::lock_guard lock(mutex_);
        old = std::exchange(scheduler_, std::move(fresh));
      }
      ++counts.restarts;
    }
  }

  std::mutex mutex_;
  std::shared_ptr<Scheduler> scheduler_ = std::make_shared<Scheduler>();
};

/// Events of the queue itself, whose head replaces, while other threads look at it.
struct CountedEvent : CTimeEvent {
  explicit CountedEvent(int number) : number(number) {}
  bool IsTheSameEvent(CTimeEvent* other) override {
    return static_cast<CountedEvent*>(other)->number == number;
  }
  void DoEvent() override { ++runs; }
  const int number;
  std::atomic<int> runs{0};
};

struct EventThread : CScheduleThread {
  ~EventThread() override { Stop(); }
  void Stop() {
    StopThread();
    StopAndWait();
  }
  bool IsEmpty() {
    const SynchGuard guard(*GetQueue());
    return !GetQueue()->GetPeepHeadEvent();
  }
};

/// Every event that was left in its queue runs exactly as often as it was put in and not taken out.
unsigned long ReplaceOnEightThreads(int rounds) {
  unsigned long wrong = 0;
  for (int round = 0; round < rounds; ++round) {
    EventThread thread;
    std::vector<std::unique_ptr<CountedEvent>> events;
    for (int i = 0; i < 64; ++i) events.push_back(std::make_unique<CountedEvent>(i % 16));
    std::atomic<int> inserted{0}, replaced{0};
    if (!thread.CreateThread(0, 0, nullptr)) return 1;
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
      threads.emplace_back([&, t] {
        for (int i = 0; i < 8; ++i) {
          CountedEvent* const event = events[static_cast<std::size_t>(t * 8 + i)].get();
          event->SetDelayTime(0, 5 + i);
          CTimeEvent* old = nullptr;
          if (!thread.InsertAndReplaceEvent(event, &old)) continue;
          ++inserted;
          if (old) ++replaced;
        }
      });
    for (std::thread& each : threads) each.join();
    const auto limit = SteadyClock::now() + 20s;
    while (!thread.IsEmpty() && SteadyClock::now() < limit) std::this_thread::sleep_for(1ms);
    thread.Stop();
    int ran = 0;
    for (const auto& event : events) ran += event->runs;
    if (ran != inserted - replaced) ++wrong;
    counts.started += static_cast<unsigned long>(inserted);
    counts.ran += static_cast<unsigned long>(ran);
    counts.replaced += static_cast<unsigned long>(replaced);
  }
  return wrong;
}

struct Early {
  unsigned long ran = 0, early = 0, lost = 0;
};

/// A clock that jumps to and fro by up to an hour. An event runs when the clock has passed its
/// time, not before.
Early StepTheClock(int events) {
  struct Event : CTimeEvent {
    void DoEvent() override {
      LONG seconds;
      int milliseconds;
      GetTime(&seconds, &milliseconds);
      // The step may come between the look of the scheduler and this one.
      if (NowMilliseconds() + 3'600'000 < seconds * 1000L + milliseconds) early = true;
      if (NowMilliseconds() < seconds * 1000L + milliseconds && !stepped) early = true;
      ++runs;
    }
    std::atomic<bool> early{false}, stepped{false};
    std::atomic<int> runs{0};
  };
  SetClockForTesting(ShiftedSeconds, ShiftedMilliseconds);
  Early result;
  {
    EventThread thread;
    if (!thread.CreateThread(0, 0, nullptr)) return {0, 0, 1};
    std::mt19937 random(1);
    // The scheduler looks at the clock at least once in a minute; a new head makes it look now.
    std::vector<std::unique_ptr<CountedEvent>> nudges;
    const auto nudge = [&] {
      nudges.push_back(std::make_unique<CountedEvent>(-1));
      nudges.back()->SetTime(0, 0);
      thread.InsertTimeEvent(nudges.back().get());
    };
    for (int i = 0; i < events; ++i) {
      Event event;
      event.SetDelayTime(0, 20);
      CTimeEvent* replaced;
      thread.InsertAndReplaceEvent(&event, &replaced);
      if (i % 2) {
        event.stepped = true;
        shiftMilliseconds += static_cast<long>(random() % 7'200'000) - 3'600'000;
        ++counts.steps;
        nudge();
      }
      const auto limit = SteadyClock::now() + 100ms;
      while (!event.runs && SteadyClock::now() < limit) std::this_thread::sleep_for(1ms);
      if (!event.runs) {  // it has been put off, and comes now
        shiftMilliseconds += 7'200'000;
        nudge();
      }
      const auto last = SteadyClock::now() + 10s;
      while (!event.runs && SteadyClock::now() < last) std::this_thread::sleep_for(1ms);
      result.ran += static_cast<unsigned long>(event.runs.load());
      result.early += event.early;
      result.lost += event.runs == 0;
      if (event.runs == 0) break;
    }
    thread.Stop();
  }
  SetClockForTesting(nullptr);
  shiftMilliseconds = 0;
  return result;
}

void InterruptEverything() {
  struct sigaction action = {};
  action.sa_handler = [](int) { ++caught; };
  sigaction(SIGALRM, &action, nullptr);  // without SA_RESTART
  const itimerval timer = {{0, 2000}, {0, 2000}};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

#if defined(__SANITIZE_THREAD__)
constexpr const char* kWatched = "under ThreadSanitizer ";
#else
constexpr const char* kWatched = "";
#endif

}  // namespace
}  // namespace vosmere::report

int main(int argc, char** argv) {
  using namespace vosmere::report;
  Section section(argc, argv, "The scheduler under stress");
  const std::chrono::seconds time = section.isShort() ? 6s : 600s;
  InterruptEverything();
  Stress().Run(time);
  const unsigned long wrong = ReplaceOnEightThreads(section.isShort() ? 10 : 500);
  const Early steps = StepTheClock(section.isShort() ? 20 : 500);
  section.Say(std::string("Eight threads started, replaced, cancelled and moved jobs for ") +
              std::to_string(time.count()) + " seconds " + kWatched +
              "while a ninth replaced the scheduler by a new one again and again, forked, and a "
              "timer sent a signal "
              "every two milliseconds. Then eight threads put events into one queue that replace "
              "each other, and "
              "events waited while the clock jumped by up to an hour. No event may run early, "
              "twice or never.");
  section.Row("What", "How many");
  section.Row("jobs and events started", counts.started.load());
  section.Row("of them ran", counts.ran.load());
  section.Row("cancelled before they ran", counts.cancelled.load());
  section.Row("replaced", counts.replaced.load());
  section.Row("schedulers ended with jobs in them", counts.restarts.load());
  section.Row("forks", counts.forks.load());
  section.Row("signals", caught.load());
  section.Row("steps of the clock", counts.steps.load());
  section.Row("ran early", counts.early.load() + steps.early);
  section.Row("ran twice", counts.twice.load());
  section.Row("never ran", counts.lost.load() + steps.lost + wrong);
  if (counts.early + steps.early) section.Wrong("a job ran early");
  if (counts.twice) section.Wrong("a job ran twice");
  if (counts.lost + steps.lost) section.Wrong("a job was lost");
  if (wrong) section.Wrong("an event of a queue ran too often or never");
  if (counts.forksFailed) section.Wrong("a fork failed");
  return section.End();
}
