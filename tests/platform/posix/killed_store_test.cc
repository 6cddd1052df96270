// Programs that are killed while they save, before and after every call that changes the disk. With
// VOSMERE_FAULTS set, as `./dev faults` does, there are more of them.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/support/disk.h"
#include "tests/support/files.h"
#include "tests/support/jobs.h"
#include "tests/support/stored_tree.h"
#include "vosmere/cpp/store.h"
#include "vosmere/storage/safe_save.h"

namespace vosmere::test {
namespace {

namespace fs = std::filesystem;

/// Kills the process before or after a call.
class KillingDisk : public DiskWatch {
 public:
  explicit KillingDisk(int at) : at_(at) { WatchDiskForTesting(this); }
  ULONG Before(const DiskCall& call, std::size_t* most) override {
    if (at_ % 2 == 0 && call_ == at_ / 2) _exit(9);
    SkipFlush(call, most);
    return 0;
  }
  void After(const DiskCall&, ULONG) override {
    if (call_++ == at_ / 2 && at_ % 2 == 1) _exit(9);
  }

 private:
  const int at_;
  std::atomic<int> call_ = 0;
};

/// Runs `act` in a process of its own. True if the process was killed.
template <class Act>
bool IsKilled(Act act) {
  const pid_t child = fork();
  if (child == 0) {
    act();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  return WEXITSTATUS(status) == 9;
}

/// Memory that a child shares with its parent.
class SharedCount {
 public:
  SharedCount()
      : count_(static_cast<std::atomic<int>*>(mmap(nullptr, sizeof(std::atomic<int>),
                                                   PROT_READ | PROT_WRITE,
                                                   MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
  ~SharedCount() { munmap(count_, sizeof *count_); }
  std::atomic<int>& operator*() { return *count_; }

 private:
  std::atomic<int>* count_;
};

TEST(Killed, WhileItSavesAFileLeavesTheOldOrTheNewOne) {
  const TempFolder folder;
  const fs::path path = folder / "file";
  int kills = 0;
  for (int call = 0;; ++call) {
    WriteBytes(path, "old");
    const FilePiece piece{"new!", 4};
    const bool killed = IsKilled([&] {
      const KillingDisk disk(call);
      SafeSave(W(path), &piece, 1, nullptr, nullptr, nullptr);
    });
    if (!killed) break;
    ++kills;
    const std::string now = ReadBytes(path);
    ASSERT_TRUE(now == "old" || now == "new!") << call;
    const FastDisk fast;
    ASSERT_TRUE(SafeSave(W(path), &piece, 1, nullptr, nullptr, nullptr));
    ASSERT_EQ(std::distance(fs::directory_iterator(path.parent_path()), fs::directory_iterator()),
              1)
        << "after call " << call;
  }
  EXPECT_GE(kills, 14);
  SayCount(kills, "kills of a safe save");
}

TEST(Killed, WhileItChangesAStoreLosesNothingThatWasFlushed) {
  const TempFolder folder;
  const fs::path path = folder / "store";
  SharedCount flushed;
  int kills = 0;
  const int rounds = IsLongForm() ? 40 : 3;
  const auto change = [&](std::vector<std::string>* history) {
    StoreOptions options;
    options.groupMilliseconds = 1000;
    Result<Store> store = Store::Open(path.u16string(), options);
    RandomChanges random(3);
    for (int i = 0; store && i < rounds; ++i) {
      random.Change(store->tree());
      if (history) history->push_back(Dump(store->tree()));
      if (i % 8 == 1 ? !store->Checkpoint() : !store->Flush()) *flushed = i + 1;
    }
  };
  const SteppedClock clock(1'700'000'000);
  std::vector<std::string> history;
  {
    const FastDisk fast;
    change(&history);
  }
  for (int call = 0;; ++call) {
    fs::remove_all(path);
    *flushed = 0;
    const bool killed = IsKilled([&] {
      const KillingDisk disk(call);
      change(nullptr);
    });
    if (!killed) break;
    ++kills;
    const FastDisk fast;
    const Result<Store> store = Store::Open(path.u16string());
    ASSERT_TRUE(store) << call << ": " << store.error();
    if (*flushed == 0) continue;
    const auto least = history.begin() + *flushed - 1;
    ASSERT_TRUE(std::find(least, history.end(), Dump(store->tree())) != history.end()) << call;
  }
  EXPECT_GE(kills, 30);
  SayCount(kills, "kills of a store");
}

// Each process adds one to the number in a file, and counts how often that was saved.
TEST(Killed, OrNotTwoProcessesThatSaveOneFileLoseNothingWithoutAWord) {
  const TempFolder folder;
  const fs::path path = folder / "number";
  WriteBytes(path, "0");
  SharedCount saves;
  const auto end =
      std::chrono::steady_clock::now() +
      (IsLongForm() ? std::chrono::milliseconds(10'000) : std::chrono::milliseconds(50));
  const auto addOnes = [&] {
    const FastDisk fast;
    while (*saves < 6 || std::chrono::steady_clock::now() < end) {
      FileMark before, after;
      ReadFileMark(W(path), &before, nullptr);
      const std::string next = std::to_string(std::atoi(ReadBytes(path).c_str()) + 1);
      ReadFileMark(W(path), &after, nullptr);
      const FilePiece piece{next.data(), next.size()};
      if (before == after && SafeSave(W(path), &piece, 1, &before, nullptr, nullptr)) ++*saves;
    }
  };
  const pid_t child = fork();
  if (child == 0) {
    addOnes();
    _exit(0);
  }
  addOnes();
  waitpid(child, nullptr, 0);
  EXPECT_EQ(ReadBytes(path), std::to_string(*saves));
  SayCount(*saves, "saves by two processes");
}

}  // namespace
}  // namespace vosmere::test
