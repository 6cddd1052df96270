#include "vosmere/sched/schedule_thread.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>

#include "tests/support/jobs.h"
#include "tests/support/test.h"
#include "tests/support/traces.h"
#include "vosmere/sched/event_queue.h"

namespace vosmere::test::schedule_thread {

constexpr int kHang = 20'000;  // milliseconds; nothing here takes so long

class Scheduler : public CScheduleThread {
 public:
  ~Scheduler() override { StopAndWait(); }
  using CScheduleThread::CheckEvent;
  using CScheduleThread::GetQueue;
  using CScheduleThread::GetWaitTimeout;
};

template <class Condition>
bool Eventually(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kHang);
  while (!condition() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  return condition();
}

TEST(ScheduleThread, FiresOneDueEventPerStepEqualTimesInTheOrderOfInsertion) {
  const SteppedClock clock(1000);
  int fired = 0;
  std::deque<Job> jobs;
  Scheduler scheduler;
  for (const int order : {2, 3, 1, 4}) {
    Job& job = jobs.emplace_back(order == 1 ? 999 : 1000, 0,
                                 [&, order](Job&) { EXPECT_EQ(order, ++fired); });
    scheduler.InsertTimeEvent(&job);
  }
  for (const int count : {1, 2, 3, 4, 4}) {
    scheduler.CheckEvent();
    EXPECT_EQ(fired, count);
  }
  EXPECT_EQ(scheduler.GetWaitTimeout(), -1);
  EXPECT_EQ(scheduler.GetHeadEvent(), nullptr);
}

TEST(ScheduleThread, SleepsUntilTheHeadIsDueWhateverTheClock) {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr struct {
    LONG time;
    int milliseconds, wait;
  } kCases[] = {
      {1001, 0, 500},
      {1000, 501, 1},
      {1003, 250, 2750},
      {1000, 2500, 2000},
      {1001, -501, 500},
      {1002, -99'999, 1500},
      {1'000'000'000, 0, kMost},
      {kMost, kMost - 1000, kMost},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.time);
    const SteppedClock clock(1000, 500);
    int fired = 0;
    Job job(c.time, c.milliseconds, [&](Job&) { ++fired; });
    Scheduler scheduler;
    scheduler.InsertTimeEvent(&job);
    scheduler.CheckEvent();
    EXPECT_EQ(scheduler.GetWaitTimeout(), c.wait);
    clock.Set(400, 500);
    scheduler.CheckEvent();
    EXPECT_GT(scheduler.GetWaitTimeout(), c.wait == kMost ? c.wait - 1 : c.wait);
    EXPECT_EQ(fired, 0);
    clock.Set(kMost, kMost);
    scheduler.CheckEvent();
    EXPECT_EQ(fired, 1);
  }
}

TEST(ScheduleThread, AJobMayDoAnything) {
  const SteppedClock clock(1000);
  const Traces traces;
  auto scheduler = std::make_unique<Scheduler>();
  std::string fired;
  Job old(1000, 0), later(1001, 0), taken(1000, 0), kept(1000, 0), replacement(1000, 0);
  later.SetID(1);
  old.SetID(1);
  replacement.SetID(1);
  Job throws(999, 0, [&](Job&) { throw std::runtime_error("job"); });
  auto* const frees = new Job(999, 0, [&](Job& self) {
    fired += "frees ";
    delete &self;
  });
  Job rearms(999, 0, [&](Job& self) {
    fired += "rearms ";
    self.SetDelayTime(2, 0);
    scheduler->InsertTimeEvent(&self);
  });
  Job changes(999, 0, [&](Job&) {
    CTimeEvent* replaced = nullptr;
    EXPECT_TRUE(scheduler->InsertAndReplaceEvent(&later, &replaced));
    EXPECT_EQ(replaced, &old);
    EXPECT_TRUE(scheduler->InsertAndReplaceEvent(&old, &replaced));
    EXPECT_EQ(replaced, &later);
    EXPECT_EQ(scheduler->GetHeadEvent(), &taken);
    EXPECT_TRUE(scheduler->InsertOrReplaceEvent(&replacement, false, &replaced));
    EXPECT_EQ(replaced, &old);
  });
  Job destroys(1000, 0, [&](Job&) { scheduler.reset(); });
  for (Job* const job : {&throws, frees, &rearms, &changes, &taken, &old, &kept, &destroys})
    scheduler->InsertTimeEvent(job);
  for (int step = 0; step < 6; ++step) scheduler->CheckEvent();
  EXPECT_FALSE(scheduler);
  EXPECT_EQ(fired, "frees rearms ");
  EXPECT_EQ(traces.lines().size(), 1u);
}

TEST(ScheduleThread, EndsOutOfAnEndlessSleepAndOfAJobThatRearmsItselfInThePastForEver) {
  for (const bool busy : {false, true})
    for (const bool kill : {false, true}) {
      Scheduler scheduler;
      Job job(0, 0, [&](Job& self) { scheduler.InsertTimeEvent(&self); });
      if (busy) scheduler.InsertTimeEvent(&job);
      scheduler.CreateThread(0, 0, nullptr);
      EXPECT_FALSE(scheduler.WaitForEnd(20));
      if (kill && !busy) scheduler.KillThread();  // not a job, which on Windows holds the lock
      scheduler.StopThread();
      EXPECT_TRUE(scheduler.WaitForEnd(kHang));
    }
}

TEST(ScheduleThread, EndsWhenDestroyedAlsoByItsOwnJob) {
  for (const ULONG flags : {ULONG{0}, kCreateSuspended}) {
    CScheduleThread scheduler;
    scheduler.CreateThread(flags, 0, nullptr);
  }
  for (int i = 0; i < 50; ++i) {
    std::atomic<bool> done = false;
    auto* const scheduler = new CScheduleThread;
    Job job([&](Job&) {
      delete scheduler;
      done = true;
    });
    scheduler->InsertTimeEvent(&job);
    scheduler->CreateThread(0, 0, nullptr);
    EXPECT_TRUE(Eventually([&] { return done.load(); }));
  }
}

TEST(ScheduleThread, WakesUpForAnEarlierEventAndForTheFirstOne) {
  for (const bool empty : {false, true}) {
    std::atomic<int> fired = 0;
    Job late, job([&](Job&) { ++fired; });
    late.SetDelayTime(3600, 0);
    Scheduler scheduler;
    if (!empty) scheduler.InsertTimeEvent(&late);
    scheduler.CreateThread(0, 0, nullptr);
    for (int i = 1; i <= 1500; ++i) {
      scheduler.InsertTimeEvent(&job);
      ASSERT_TRUE(Eventually([&] { return fired == i; }));
    }
  }
}

TEST(ScheduleThread, ASubclassMayStepAsItLikes) {
  struct Ticker : Scheduler {
    Ticker() { SetWaitTimeout(10); }
    ~Ticker() override { StopAndWait(); }
    void CheckEvent() override {
      ResetQueueChanged();
      if (++ticks == 3) SetWaitTimeout(-1);
    }
    std::atomic<int> ticks = 0;
  };
  const auto start = std::chrono::steady_clock::now();
  Ticker ticker;
  ticker.CreateThread(0, 0, nullptr);
  EXPECT_TRUE(Eventually([&] { return ticker.ticks == 3; }));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
  Job job;
  ticker.InsertTimeEvent(&job);
  EXPECT_TRUE(Eventually([&] { return ticker.ticks == 4; }));
  EXPECT_FALSE(ticker.WaitForEnd(20));
  EXPECT_EQ(ticker.ticks, 4);
}

// Eight threads insert, replace and take jobs that re-arm and free themselves.
class Storm {
 public:
  void Run() {
    scheduler_.CreateThread(0, 0, nullptr);
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 8; ++seed) threads.emplace_back([this, seed] { Work(seed); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(Eventually([&] { return gone_ == made_; })) << gone_ << " of " << made_;
    scheduler_.StopThread();
    EXPECT_TRUE(scheduler_.WaitForEnd(kHang));
    EXPECT_EQ(early_, 0);
    EXPECT_EQ(outOfOrder_, 0);
  }

 private:
  struct StormJob : Job {
    using Job::Job;
    int order = 0;
    int rounds = 0;
  };

  void Work(unsigned seed) {
    std::minstd_rand random(seed);
    for (int i = 0; i < 400; ++i) {
      auto* const job = new StormJob([this](Job& self) { Fire(static_cast<StormJob*>(&self)); });
      ++made_;
      job->rounds = random() % 3;
      job->SetDelayTime(0, static_cast<int>(random() % 12) - 2);
      job->SetID(random() % 3 ? 0 : 1 + random() % 4);
      Insert(job);
      if (random() % 8 == 0) Discard(scheduler_.GetHeadEvent());
      if (random() % 8 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  void Insert(StormJob* job) {
    const SynchGuard guard(*scheduler_.GetQueue());
    job->order = ++inserted_;
    if (job->GetID() == 0) return scheduler_.InsertTimeEvent(job);
    CTimeEvent* replaced;
    if (!scheduler_.InsertOrReplaceEvent(job, job->rounds == 1, &replaced)) Discard(job);
    Discard(replaced);
  }

  void Discard(CTimeEvent* job) {
    gone_ += job != nullptr;
    delete job;
  }

  void Fire(StormJob* job) {
    std::pair<LONG, int> time;
    job->GetTime(&time.first, &time.second);
    early_ += job->CompareCurrentTime(nullptr, nullptr) > 0;
    outOfOrder_ += time == lastTime_ && job->order < lastOrder_;
    lastTime_ = time;
    lastOrder_ = job->order;
    if (job->rounds-- == 0) return Discard(job);
    job->SetDelayTime(0, 3);
    Insert(job);
  }

  std::atomic<int> made_ = 0, gone_ = 0;
  int inserted_ = 0, early_ = 0, outOfOrder_ = 0, lastOrder_ = 0;  // under the queue's lock
  std::pair<LONG, int> lastTime_{};
  Scheduler scheduler_;
};

TEST(ScheduleThread, WithstandsEightThreads) {
  Storm().Run();
}

}  // namespace vosmere::test::schedule_thread
