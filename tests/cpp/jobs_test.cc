#include "vosmere/cpp/jobs.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/failing_memory.h"

namespace vosmere {
namespace {

using namespace std::chrono_literals;

/// Waits until the jobs that are due now have run.
void WaitFor(Scheduler& scheduler) {
  std::promise<void> done;
  const Job job = scheduler.After(2ms, [&] { done.set_value(); });
  done.get_future().wait();
}

TEST(Scheduler, RunsAtATimeAndInOrder) {
  Scheduler scheduler;
  ASSERT_TRUE(scheduler.IsRunning());
  std::string order;
  std::promise<std::thread::id> thread;
  const auto now = std::chrono::system_clock::now();
  const Job last = scheduler.At(now + 30ms, [&] { thread.set_value(std::this_thread::get_id()); });
  const Job second = scheduler.At(now + 20ms, [&] { order += '2'; });
  const Job first = scheduler.At(now + 10ms, [&] { order += '1'; });
  const Job past =
      scheduler.At(std::chrono::system_clock::time_point::min(), [&] { order += '0'; });
  const Job never = scheduler.After(std::chrono::milliseconds::max(), [&] { order += 'x'; });
  EXPECT_NE(thread.get_future().get(), std::this_thread::get_id());
  EXPECT_EQ(order, "012");
  EXPECT_GE(std::chrono::system_clock::now(), now + 30ms);
  EXPECT_TRUE(never.IsPending());
}

TEST(Scheduler, RepeatsUntilTheHandleGoes) {
  Scheduler scheduler;
  std::atomic<int> runs = 0;
  {
    std::promise<void> third;
    const Job job = scheduler.Every(0ms, [&] {
      if (++runs == 3) third.set_value();
      throw std::runtime_error("is dropped");
    });
    third.get_future().wait();
    EXPECT_TRUE(job.IsPending());
  }
  const int after = runs;
  WaitFor(scheduler);
  EXPECT_EQ(runs, after);
}

TEST(Job, WaitsForItsEndUnlessItIsWithin) {
  Scheduler scheduler;
  std::atomic<bool> ended = false;
  std::promise<void> began;
  {
    const Job job = scheduler.After(0ms, [&] {
      began.set_value();
      std::this_thread::sleep_for(20ms);
      ended = true;
    });
    began.get_future().wait();
  }
  EXPECT_TRUE(ended);

  std::atomic<int> runs = 0;
  std::optional<Job> own;
  std::promise<void> known;
  own = scheduler.Every(1ms, [&, wait = known.get_future().share()] {
    wait.wait();
    own.reset();
    ++runs;
  });
  known.set_value();
  WaitFor(scheduler);
  WaitFor(scheduler);
  EXPECT_EQ(runs, 1);
}

TEST(Job, MovesAndOutlivesItsScheduler) {
  Job left;
  std::atomic<int> runs = 0;
  {
    Scheduler scheduler;
    left = scheduler.After(1h, [&] { ++runs; });
    left = scheduler.After(2h, [&] { ++runs; });
    Job moved = std::move(left);
    EXPECT_TRUE(moved.IsPending());
    EXPECT_FALSE(left.IsPending());
    left.Cancel();
    left = std::move(moved);
  }
  EXPECT_FALSE(left.IsPending());
  left.Cancel();
  EXPECT_EQ(runs, 0);
}

TEST(Scheduler, TakesAJobOrThrows) {
  Scheduler scheduler;
  const Job others[] = {scheduler.After(1h, [] {}), scheduler.After(1h, [] {})};
  const long before = test::LiveAllocations();
  bool failed = true;
  for (int successes = 0; failed; ++successes) try {
      const test::FailingMemory memory(successes);
      const Job job = scheduler.After(1h, [] {});
      failed = memory.Failed();
      EXPECT_TRUE(job.IsPending());
    } catch (const std::bad_alloc&) {
      ASSERT_LT(successes, 10);
      ASSERT_EQ(test::LiveAllocations(), before);
    }
  EXPECT_EQ(test::LiveAllocations(), before);
}

TEST(Scheduler, MayGoWithinAJob) {
  auto scheduler = std::make_unique<Scheduler>();
  std::promise<void> done;
  std::promise<void> known;
  const Job job = scheduler->Every(1ms, [&, wait = known.get_future().share()] {
    wait.wait();
    scheduler.reset();
    done.set_value();
  });
  known.set_value();
  done.get_future().wait();
}

/// Handles that come and go on several threads while jobs run: for the thread sanitizer.
TEST(Scheduler, IsForManyThreads) {
  Scheduler scheduler;
  std::atomic<int> runs = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      Job jobs[8];
      for (int k = 0; k < 400; ++k) jobs[k % 8] = scheduler.Every(1ms, [&] { ++runs; });
    });
  for (std::thread& thread : threads) thread.join();
  const int after = runs;
  WaitFor(scheduler);
  EXPECT_EQ(runs, after);
}

}  // namespace
}  // namespace vosmere
