// Stores: undo, damaged files, calls that fail, and power failures.
#include "vosmere/cpp/store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/disk.h"
#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "tests/support/stored_tree.h"
#include "vosmere/platform/internal/clock.h"

namespace vosmere::test {
namespace {

namespace fs = std::filesystem;

Result<Store> OpenAt(const fs::path& path, const StoreOptions& options = {}) {
  return Store::Open(path.u16string(), options);
}

StoreOptions Reading() {
  StoreOptions options;
  options.readOnly = true;
  return options;
}

bool Says(const Store& store, const std::string& what,
          StoreNoteKind kind = StoreNoteKind::kProblem) {
  return std::any_of(store.notes().begin(), store.notes().end(), [&](const StoreNote& note) {
    return note.kind == kind && note.text.find(what) != std::string::npos;
  });
}

class AStore : public testing::Test {
 protected:
  Result<Store> Open(const StoreOptions& options = {}) { return OpenAt(path, options); }
  void CopyTo(const fs::path& to) {
    fs::remove_all(to);
    fs::copy(path, to, fs::copy_options::recursive);
  }
  /// Makes a store in the folder with that many changes, and records the tree after each.
  std::vector<std::string> MakeHistory(int changes, unsigned seed = 1) {
    Result<Store> store = Open();
    std::vector<std::string> history = {Dump(store->tree())};
    RandomChanges random(seed);
    for (int i = 0; i < changes; ++i) {
      random.Change(store->tree());
      history.push_back(Dump(store->tree()));
      EXPECT_TRUE(i % 5 != 0 || !store->Flush());
    }
    return history;
  }

  const TempFolder folder;
  const fs::path path = folder / "store";
  const FastDisk fast;
};

TEST_F(AStore, IsWhatItWasAfterAnyChangesAndUndoesThemAll) {
  const int changes = IsLongForm() ? 10'000 : 200, compared = IsLongForm() ? 40 : 1;
  StoreOptions options;
  options.undoBytes = 1 << 30;
  for (unsigned seed = 1; seed <= 2; ++seed) {
    fs::remove_all(path);
    RandomChanges random(seed);
    std::string last;
    {
      Result<Store> store = Open(options);
      ASSERT_TRUE(store) << store.error();
      std::map<std::uint64_t, std::string> history;  // by how many changes were made
      const auto isAt = [&](std::uint64_t made) {
        return !history.count(made) || history[made] == Dump(store->tree());
      };
      for (int i = 0; i < changes; ++i) {
        if (i % compared == 0) history[store->sequence()] = Dump(store->tree());
        random.Change(store->tree());
        if (i % 100 == 50) {
          ASSERT_FALSE(store->Checkpoint());
        }
      }
      std::uint64_t made = store->sequence();
      history[made] = last = Dump(store->tree());
      SayCount(made, "changes undone and redone");
      while (*store->Undo()) ASSERT_TRUE(isAt(--made)) << made;
      EXPECT_EQ(made, 0u);
      while (*store->Redo()) ASSERT_TRUE(isAt(++made)) << made;
      EXPECT_TRUE(Dump(store->tree()) == last);
    }
    for (int i = 0; i < 2; ++i) {  // from the log, then from a checkpoint
      Result<Store> store = Open();
      ASSERT_TRUE(store) << store.error();
      EXPECT_TRUE(Dump(store->tree()) == last) << seed;
      ASSERT_FALSE(store->Checkpoint());
    }
  }
}

TEST_F(AStore, UndoesAsFarAsItsMemoryForThatGoes) {
  StoreOptions options;
  options.undoBytes = 3000;
  Result<Store> store = Open(options);
  RandomChanges random(1);
  std::map<std::uint64_t, std::string> history;
  const auto change = [&](int times) {
    for (int i = 0; i < times; ++i) {
      random.Change(store->tree());
      history[store->sequence()] = Dump(store->tree());
    }
  };
  change(100);
  for (int more = 0; more < 8; ++more) {
    change(8);
    const std::uint64_t all = store->sequence();
    std::uint64_t made = all;
    while (*store->Undo()) --made;
    EXPECT_GT(all - made, 20u);
    EXPECT_LT(all - made, 100u);
    while (*store->Redo()) {
      const auto at = history.find(++made);
      EXPECT_TRUE(at == history.end() || at->second == Dump(store->tree())) << made;
    }
    EXPECT_EQ(made, all);
  }
}

TEST_F(AStore, UndoesWhatTheLogHoldsAfterItWasOpenedAgain) {
  const std::vector<std::string> history = MakeHistory(60);
  Result<Store> store = Open();
  EXPECT_TRUE(Dump(store->tree()) == history.back());
  ASSERT_TRUE(*store->Undo());
  ASSERT_TRUE(*store->Undo());
  const std::string undone = Dump(store->tree());
  EXPECT_NE(std::find(history.begin(), history.end(), undone), history.end());
  store = Error();
  store = Open();
  EXPECT_TRUE(Dump(store->tree()) == undone);
  ASSERT_TRUE(*store->Redo());
  ASSERT_TRUE(*store->Redo());
  EXPECT_TRUE(Dump(store->tree()) == history.back());
  while (*store->Undo()) {
  }
  EXPECT_TRUE(Dump(store->tree()) == history.front());
  store = Error();
  store = Open();
  RandomChanges(2).Change(store->tree());
  store = Error();
  store = Open();
  EXPECT_FALSE(*store->Redo()) << "what was undone before a change";
  while (*store->Undo()) {
  }
  EXPECT_TRUE(Dump(store->tree()) == history.front());
}

/// A change is made or not, whatever allocation fails, and the disk then has what the tree has.
TEST_F(AStore, SurvivesWantOfMemory) {
  MakeHistory(20);
  void (*const kChanges[])(Store&, vosmere::Tree & removed) = {
      [](Store& store, vosmere::Tree&) { Add<CUrlNode>(store.tree(), "x"); },
      [](Store& store, vosmere::Tree& removed) { removed = Remove(store.tree()->firstChild); },
      [](Store& store, vosmere::Tree&) { Sort(store.tree(), SortBy::kName, true); },
      [](Store& store, vosmere::Tree&) { SetName(*store.tree()->firstChild->item, "y"); },
      [](Store& store, vosmere::Tree&) { (void)store.Undo(); },
  };
  for (const auto change : kChanges)
    for (const Failures failures : {Failures::kAll, Failures::kOne}) {
      bool failed = true;
      for (int successes = 0; failed; ++successes) {
        Result<Store> store = Open();
        ASSERT_TRUE(store) << store.error();
        vosmere::Tree removed;
        try {
          const FailingMemory memory(successes, failures);
          change(*store, removed);
          failed = memory.Failed();
        } catch (const std::bad_alloc&) {
        }
        RandomChanges::Free(std::move(removed));
        const std::string now = Dump(store->tree());
        ASSERT_FALSE(store->Flush());
        store = Error();
        ASSERT_TRUE(Dump(Open()->tree()) == now) << successes;
      }
    }
}

TEST_F(AStore, OpensWholeOrNotAtAllWithoutMemory) {
  const std::string last = MakeHistory(20).back();
  bool failed = true;
  for (int successes = 0; failed; ++successes) {
    std::optional<Result<Store>> store;
    try {
      const FailingMemory memory(successes, Failures::kOne);
      store = Open(Reading());
      failed = memory.Failed();
    } catch (const std::bad_alloc&) {
    }
    ASSERT_TRUE(!store || !*store || Dump((*store)->tree()) == last) << successes;
  }
}

TEST_F(AStore, WithABrokenLogHoldsWhatCameBefore) {
  const std::vector<std::string> history = MakeHistory(25);
  const std::string log = ReadBytes(path / "changes-1");
  std::mt19937 random(1);
  const fs::path copy = folder / "copy";
  for (int i = 0; i < (IsLongForm() ? 1000 : 12); ++i) {
    std::string bytes = log;
    const std::size_t at = random() % bytes.size();
    if (i % 4 == 0) bytes[at] = static_cast<char>(bytes[at] ^ (1 << i % 8));
    if (i % 4 == 1) bytes.resize(at);
    if (i % 4 == 2) bytes.replace(at, std::string::npos, 4096, '\0');
    if (i % 4 == 3) bytes.replace(at, 4, "\xFF\xFF\xFF\x7F", 4);  // a huge length, now and then
    CopyTo(copy);
    WriteBytes(copy / "changes-1", bytes);
    for (const bool readOnly : {true, false}) {
      const Result<Store> store = OpenAt(copy, readOnly ? Reading() : StoreOptions());
      ASSERT_TRUE(store) << i << store.error();
      const std::string now = Dump(store->tree());
      ASSERT_NE(std::find(history.begin(), history.end(), now), history.end()) << i << " at " << at;
      const bool isSaid = Says(*store, "changes-1 ");
      if (!isSaid && i % 4 == 1) break;  // a cut between two records cannot be seen
      const bool isCut = i % 4 == 1, isFollowed = i % 4 == 0 && at + 500 < bytes.size();
      ASSERT_TRUE(!isCut || Says(*store, "changes-1 ends with ")) << at;
      ASSERT_TRUE(!isFollowed || Says(*store, "changes-1 cannot be used from byte ")) << at;
      ASSERT_TRUE(now == history.back() || isSaid) << i;
      ASSERT_EQ(fs::exists(copy / "checkpoint-2"), !readOnly) << i;
    }
    // What could not be used is still there.
    bool isKept = false;
    for (const auto& entry : fs::directory_iterator(copy))
      isKept = isKept || ReadBytes(entry.path()) == bytes;
    ASSERT_TRUE(isKept);
  }
}

TEST_F(AStore, WithABrokenCheckpointGoesOnFromTheOneBefore) {
  std::string last;
  {
    Result<Store> store = Open();
    RandomChanges random(5);
    for (int i = 0; i < 4; ++i) {
      for (int k = 0; k < 30; ++k) random.Change(store->tree());
      ASSERT_FALSE(store->Checkpoint());
    }
    for (int k = 0; k < 30; ++k) random.Change(store->tree());
    last = Dump(store->tree());
  }
  EXPECT_FALSE(fs::exists(path / "checkpoint-2"));
  ASSERT_TRUE(fs::exists(path / "checkpoint-3"));
  const Result<std::vector<StoredCheckpoint>> all = Store::Checkpoints(path.u16string());
  ASSERT_EQ(all->size(), 3u);
  EXPECT_TRUE(all->at(0).loads && all->at(0).items > 10);
  const std::string whole = ReadBytes(path / "checkpoint-5");
  for (std::size_t at = 3; at < whole.size(); at += whole.size() / (IsLongForm() ? 300 : 6) + 1) {
    const fs::path copy = folder / "copy";
    CopyTo(copy);
    std::string bytes = whole;
    bytes[at] ^= 4;
    WriteBytes(copy / "checkpoint-5", bytes);
    const Result<Store> store = OpenAt(copy);
    ASSERT_TRUE(store) << store.error();
    EXPECT_TRUE(Dump(store->tree()) == last) << at;
    EXPECT_TRUE(Says(*store, "checkpoint-5 does not load: ") &&
                Says(*store, "checkpoint-4 is loaded", StoreNoteKind::kState) &&
                Says(*store, " since then", StoreNoteKind::kState) &&
                Says(*store, "checkpoint-5 is set aside"));
    EXPECT_TRUE(at < 200 || Says(*store, "it would have held"));
  }
  // The items of another checkpoint, every record of which is whole.
  const std::string before = ReadBytes(path / "checkpoint-4");
  const auto record = [](const std::string& bytes, int index) {
    std::size_t at = 0, size = 0;
    for (; index >= 0; --index) {
      at += size;
      size = 8 + static_cast<unsigned char>(bytes[at]) +
             256 * static_cast<unsigned char>(bytes[at + 1]);
    }
    return bytes.substr(at, size);
  };
  WriteBytes(path / "checkpoint-5", record(whole, 0) + record(before, 1) + record(whole, 2));
  EXPECT_TRUE(Says(*OpenAt(path, Reading()), "checkpoint-5 does not load: its digest is not"));
  for (const char* name : {"checkpoint-3", "checkpoint-4", "checkpoint-5"})
    WriteBytes(path / name, "");
  const Result<Store> none = Open();
  ASSERT_FALSE(none) << "an empty tree in place of a reason";
  EXPECT_EQ(none.error().reason, "checkpoint-5 does not load: it is empty");
}

TEST_F(AStore, TakesNoLogOfAnotherStore) {
  const std::vector<std::string> history = MakeHistory(10);
  const std::string log = ReadBytes(path / "changes-1");
  fs::remove_all(path);
  const std::vector<std::string> other = MakeHistory(0);
  std::string damaged = log;
  damaged[5] ^= 1;
  for (const auto& [bytes, reason] :
       {std::pair(log, "it belongs to another store"),
        std::pair(damaged, "a record is damaged, or"), std::pair(std::string(), "it is empty")}) {
    WriteBytes(path / "changes-1", bytes);
    const Result<Store> store = OpenAt(path, Reading());
    ASSERT_TRUE(store);
    EXPECT_TRUE(Dump(store->tree()) == other.back());
    EXPECT_TRUE(Says(*store, reason)) << store->notes().back();
  }
}

TEST_F(AStore, IsHeldByOneAndReadByOthers) {
  Result<Store> store = Open();
  Add<CFolderNode>(store->tree(), "Trips");
  ASSERT_FALSE(store->Flush());
  EXPECT_EQ(Open().error().reason, "another program has the store open");
  const Result<Store> reader = Open(Reading());
  ASSERT_TRUE(reader) << reader.error();
  EXPECT_TRUE(Dump(reader->tree()) == Dump(store->tree()));
  store = Error();
  EXPECT_TRUE(Open());
  fs::create_directory(folder / "empty");
  EXPECT_EQ(OpenAt(folder / "empty", Reading()).error().reason, "there is no store in the folder");
  EXPECT_FALSE(OpenAt(folder / "no" / "store"));
}

// Whatever fails, the tree in memory has every change, and the disk has what was flushed.
TEST_F(AStore, LosesNothingThatWasFlushedWhateverCallFails) {
  for (const bool forEver : {false, true})
    for (int call = 0;; ++call) {
      fs::remove_all(path);
      bool reached = false;
      std::string flushed, last;
      std::vector<std::string> history;
      {
        FailingDisk disk(call, forEver, call % 2 ? 28 : 5);
        StoreOptions options;
        options.groupMilliseconds = 1000;  // flushed only on request, so that calls can be numbered
        Result<Store> store = Open(options);
        RandomChanges random(7);
        for (int i = 0; store && i < (IsLongForm() ? 40 : 9); ++i) {
          random.Change(store->tree());
          history.push_back(last = Dump(store->tree()));
          const bool stored = i % 3 == 2 && (i == 5 ? !store->Checkpoint() : !store->Flush());
          if (stored) flushed = last;
        }
        reached = disk.reached();
        if (!forEver && store) {
          ASSERT_FALSE(store->Flush()) << call;
          flushed = last;
        }
      }
      const FastDisk works;
      const Result<Store> store = Open();
      ASSERT_TRUE(store) << call << " " << store.error();
      const std::string now = Dump(store->tree());
      const auto at = std::find(history.begin(), history.end(), now);
      if (!flushed.empty()) {
        ASSERT_NE(at, history.end()) << call;
        ASSERT_GE(at, std::find(history.begin(), history.end(), flushed)) << call;
      }
      if (!reached) break;
    }
}

TEST_F(AStore, LosesNothingThatWasFlushedWheneverThePowerFails) {
  std::vector<std::string> history = MakeHistory(6);
  std::vector<std::pair<std::size_t, std::size_t>> flushed = {{0, history.size() - 1}};
  PowerLoss disk(path);
  {
    StoreOptions options;
    options.groupMilliseconds = 1000;
    options.keep = 2;
    Result<Store> store = Open(options);
    RandomChanges random(11);
    for (int i = 0; i < (IsLongForm() ? 80 : 8); ++i) {
      random.Change(store->tree());
      history.push_back(Dump(store->tree()));
      if (i % 2 == 0) continue;
      ASSERT_FALSE(i % 4 == 3 ? store->Checkpoint() : store->Flush());
      flushed.push_back({disk.calls(), history.size() - 1});
    }
  }
  const fs::path left = folder / "left";
  const int states = disk.ForEachState(left, [&](std::size_t call) {
    const FastDisk works;
    const Result<Store> store = OpenAt(left);
    ASSERT_TRUE(store) << "after call " << call << ": " << store.error();
    std::size_t least = 0;
    for (const auto& [at, change] : flushed)
      if (at <= call) least = change;
    const auto at = std::find(history.begin() + static_cast<std::ptrdiff_t>(least), history.end(),
                              Dump(store->tree()));
    ASSERT_TRUE(at != history.end()) << "after call " << call << ": " << store->notes().back();
  });
  SayCount(states, "states that a loss of power leaves of a store");
  EXPECT_GT(states, 40);
}

TEST_F(AStore, TellsEveryChange) {
  std::string told, read;
  const auto append = [](std::string& to) {
    return [&to](std::uint64_t sequence, CVSMNotifyMsg& message) {
      to += std::to_string(sequence) + " " + std::to_string(message.GetNotifyType()) + " " +
            ToUtf8(message.GetName()) + " in " + ToUtf8(message.GetParent()) +
            (message.GetOldParent() ? " from " + ToUtf8(message.GetOldParent()) : "") + "; ";
    };
  };
  Result<Store> store = Open();
  SetName(*store->tree()->item, "Library");
  store->Listen(append(told));
  CFolderNode* const trips = Add<CFolderNode>(store->tree(), "Trips");
  CUrlNode* const page = Add<CUrlNode>(trips, "Rome", "http://rome.example/");
  Move(page, store->tree());
  SetAddress(*page, "http://roma.example/");
  SetAddress(*page, "http://roma.example/");  // is no change
  Remove(page);
  ASSERT_TRUE(*store->Undo());
  EXPECT_EQ(told,
            "2 1000 Trips in Library; 3 3000 Rome in Trips; 4 3003 Rome in Library from Trips; "
            "5 3001 Rome in Library; 6 3002 Rome in Library; 7 3000 Rome in Library; ");
  ASSERT_FALSE(store->Changes(1, append(read)));
  EXPECT_EQ(read, told);
  const std::uint64_t number = store->NumberOf(trips->GetRNode());
  EXPECT_EQ(store->LinkOf(number), trips->GetRNode());
  fs::create_directory(path / "changes-9");
  const std::optional<Error> unread = store->Changes(0, append(read));
  EXPECT_TRUE(unread && unread->reason.rfind("a log cannot be read", 0) == 0);
  told.clear();
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(*store->Undo());
  EXPECT_EQ(told,
            "8 3001 Rome in Library; 9 3003 Rome in Trips from Library; 10 3002 Rome in Trips; ");
  // The log has the number of a changed item, whose name nobody knows after it was removed.
  fs::remove(path / "changes-9");
  read.clear();
  ASSERT_FALSE(store->Changes(3, append(read)));
  EXPECT_EQ(read.substr(0, 46), "4 3003  in Library from Trips; 5 3001  in ; 6 ");
}

// The files were written on Linux: "after" is the checkpoint that followed them.
TEST_F(AStore, OfTheOtherPlatformBecomesTheSameBytes) {
  fs::copy(fs::path(VOSMERE_TEST_DATA) / "store", path);
  Result<Store> store = Open();
  ASSERT_TRUE(store) << store.error();
  SetClockForTesting([] { return LONG{1'700'000'000}; });
  EXPECT_FALSE(store->Checkpoint());
  SetClockForTesting(nullptr);
  EXPECT_EQ(store->sequence(), 51u);
  EXPECT_TRUE(ReadBytes(path / "checkpoint-2") == TestData("store/after"));
}

TEST_F(AStore, StaysWhereItIsWhenTheProgramGoesElsewhere) {
  const fs::path here = fs::current_path();
  fs::current_path(path.parent_path());
  Result<Store> store = Store::Open("store");
  fs::current_path(here);
  ASSERT_TRUE(store) << store.error();
  EXPECT_FALSE(store->Checkpoint());
  EXPECT_TRUE(fs::exists(path / "checkpoint-2"));
}

TEST_F(AStore, PutsUnloggedChangesIntoTheNextCheckpoint) {
  Result<Store> store = Open();
  RNode* const gone = Add<CFolderNode>(store->tree(), "gone")->GetRNode();
  for (int i = 0; i < 2; ++i) {
    if (i == 0) RNTool::InsertAsChild(store->tree(), NewTree("unlogged").release());
    if (i == 1) {
      chain::Unlink(store->tree()->firstChild, gone);
      gone->parent = nullptr;
      const Tree freed(gone);
    }
    ASSERT_FALSE(store->Checkpoint());
    EXPECT_TRUE(Dump(Open(Reading())->tree()) == Dump(store->tree()));
  }
}

TEST_F(AStore, OpensAnOldCheckpointAsItWas) {
  std::string first;
  std::uint64_t sequence = 0;
  {
    Result<Store> store = Open();
    ASSERT_FALSE(store->SetTree(NewTree("mine")));
    first = Dump(store->tree());
    Add<CUrlNode>(store->tree(), "page");
    ASSERT_FALSE(store->Checkpoint());
    sequence = store->sequence();
  }
  StoreOptions options;
  options.checkpoint = 2;
  EXPECT_TRUE(Dump(Open(options)->tree()) == first);
  EXPECT_TRUE(Dump(Open()->tree()) == first) << "which is the newest now";
  EXPECT_GT(Open()->sequence(), sequence);
}

}  // namespace
}  // namespace vosmere::test
