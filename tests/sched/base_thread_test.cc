#include "vosmere/sched/base_thread.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <utility>

#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "vosmere/base/lock.h"

namespace vosmere::test::base_thread {

constexpr int kHang = 20'000;  // milliseconds; nothing here takes so long

/// Records which hooks were called.
class Worker : public CBaseThread {
 public:
  explicit Worker(std::function<void(Worker&)> work = {}) : work_(std::move(work)) {}
  using CBaseThread::CloseStartGate;
  using CBaseThread::KeepLooping;
  using CBaseThread::OpenStartGate;
  using CBaseThread::StopAndWait;

  std::string hooks;

 protected:
  void PrevWork() override { hooks += "prev "; }
  void DoWork() override {
    hooks += "do ";
    if (const auto work = work_) work(*this);  // a copy: it may free the object
  }
  void PostWork() override { hooks += "post"; }

 private:
  std::function<void(Worker&)> work_;
};

TEST(BaseThread, RunsItsHooksOnceOnItsOwnStackAndIsInactiveAfterwards) {
  unsigned id = 0;
  Worker worker([&](Worker& self) {
    volatile char deep[24 << 20];
    for (std::size_t i = sizeof deep; i > 0; i -= 4096) deep[i - 1] = 1;
    id = self.GetThreadID();
  });
  EXPECT_FALSE(worker.IsActive());
  EXPECT_NE(worker.CreateThread(0, 32 << 20, nullptr), 0);
  ASSERT_TRUE(worker.WaitForEnd(kHang));
  EXPECT_EQ(worker.hooks, "prev do post");
  EXPECT_FALSE(worker.IsActive());
  EXPECT_EQ(id, worker.GetThreadID());
}

TEST(BaseThread, RunsItsHooksOnAThreadFromElsewhereAlsoWithinAnothersHook) {
  Worker inner, outer([&](Worker&) { CBaseThread::Start(&inner); });
  CBaseThread::Start(&outer);
  EXPECT_EQ(inner.hooks, "prev do post");
  EXPECT_EQ(outer.hooks, "prev do post");
  CBaseThread::Start(new Worker([](Worker& self) {
    Worker destroyer([&](Worker&) { delete &self; });
    CBaseThread::Start(&destroyer);
    EXPECT_EQ(destroyer.hooks, "prev do post");
  }));
}

TEST(BaseThread, MayBeDestroyedOnceItIsInactiveAndByItsOwnHook) {
  for (int i = 0; i < 100; ++i) {
    Worker worker;
    worker.CreateThread(0, 0, nullptr);
    while (worker.IsActive()) std::this_thread::yield();

    std::atomic<bool> done = false;
    auto* const own = new Worker([&](Worker& self) {
      delete &self;
      done = true;
    });
    own->CreateThread(0, 0, nullptr);
    while (!done) std::this_thread::yield();
  }
}

TEST(BaseThread, WaitsToBeResumedAndForItsGate) {
  Worker worker;
  EXPECT_EQ(worker.ResumeThread(), 0xFFFFFFFF);
  worker.CreateThread(kCreateSuspended, 0, nullptr);
  worker.CloseStartGate();
  EXPECT_TRUE(worker.IsActive());
  EXPECT_EQ(worker.hooks, "");
  EXPECT_EQ(worker.ResumeThread(), 1u);
  EXPECT_FALSE(worker.WaitForEnd(20));
  worker.OpenStartGate();
  ASSERT_TRUE(worker.WaitForEnd(kHang));
  EXPECT_EQ(worker.hooks, "prev do post");

  Worker stopped;
  stopped.CloseStartGate();
  stopped.CreateThread(kCreateSuspended, 0, nullptr);
  stopped.StopAndWait();
  EXPECT_EQ(stopped.hooks, "prev do post");
}

TEST(BaseThread, IsActiveEvenIfItCouldNotBeCreated) {
  Worker worker;
  {
    const FailingMemory memory(0);
    EXPECT_EQ(worker.CreateThread(0, 0, nullptr), 0);
  }
  EXPECT_TRUE(worker.IsActive());
  EXPECT_EQ(worker.GetHandle(), nullptr);
}

TEST(BaseThread, KilledDoesNoPostWork) {
  for (const ULONG flags : {ULONG{0}, kCreateSuspended}) {
    // 32-bit Wine itself crashes when a thread ends that has never run.
    if (flags && RunsOnWine() && sizeof(void*) == 4) continue;
    std::atomic<bool> working = flags != 0;
    Worker worker([&](Worker& self) {
      working = true;
      while (self.KeepLooping()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    worker.CreateThread(flags, 0, nullptr);
    EXPECT_EQ(worker.CreateThread(flags, 0, nullptr), 0) << "it runs already";
    while (!working) std::this_thread::yield();
    worker.KillThread();
    EXPECT_FALSE(worker.IsActive());
    worker.KillThread();
    ASSERT_TRUE(worker.WaitForEnd(kHang));
    EXPECT_EQ(worker.hooks, flags ? "" : "prev do ");
  }
}

TEST(Synch, IsHeldByOneThreadAsOftenAsItLikes) {
  CKQSynch synch;
  const SynchGuard guard(synch);
  EXPECT_TRUE(synch.TryLock());
  synch.UnLock();
  bool entered = true;
  std::thread([&] { entered = synch.TryLock(); }).join();
  EXPECT_FALSE(entered);
}

}  // namespace vosmere::test::base_thread
