// Safe saves: calls that fail, power failures, and saves at the same time.
#include "vosmere/storage/safe_save.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/disk.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"

namespace vosmere::test {
namespace {

const std::string kOld = "the old document", kNew(300, 'n');

class SafeSaveFile : public testing::Test {
 protected:
  bool Save(const std::string& bytes, const FileMark* expected = nullptr,
            FileMark* saved = nullptr) {
    const FilePiece pieces[] = {{bytes.data(), bytes.size() / 3},
                                {"", 0},
                                {bytes.data() + bytes.size() / 3, bytes.size() - bytes.size() / 3}};
    return SafeSave(path, pieces, 3, expected, saved, &error);
  }
  FileMark Mark() {
    FileMark mark;
    EXPECT_TRUE(ReadFileMark(path, &mark, nullptr));
    return mark;
  }
  std::string Document() { return ReadBytes(folder / "docs" / "list.opml"); }
  int Files(const std::filesystem::path& where) {
    const std::filesystem::directory_iterator files(where);
    return static_cast<int>(std::distance(begin(files), end(files)));
  }

  SafeSaveFile() { std::filesystem::create_directory(folder / "docs"); }
  const TempFolder folder;
  const Wide path = W(folder / "docs" / "list.opml");
  DocumentError error;
};

TEST_F(SafeSaveFile, WhateverCallFailsTheOldOrTheNewOneIsThere) {
  int refused = 0;
  for (const bool forEver : {false, true})
    for (const ULONG code : {28u, 5u, 4u, FailingDisk::kShort})  // no space, bad disk, interrupted
      for (int call = 0;; ++call) {
        if (code == 4u && forEver) break;  // is retried for ever
        WriteBytes(folder / "docs" / "list.opml", kOld);
        bool saved = false, reached = false;
        {
          FailingDisk disk(call, forEver, code);
          error = {};
          saved = Save(kNew);
          reached = disk.reached();
        }
        if (!reached) break;
        refused += !saved;
        const bool isNew = Document() == kNew;
        ASSERT_TRUE(isNew || Document() == kOld) << call;
        ASSERT_TRUE(saved || error.reason[0]) << call;
        ASSERT_TRUE(saved ? isNew : !isNew || std::strstr(error.reason, "is saved, but")) << call;
        const FastDisk fast;
        ASSERT_TRUE(Save("the next")) << error.reason;
        ASSERT_EQ(Files(folder / "docs"), 1) << "after call " << call;
      }
  EXPECT_GT(refused, 20);
}

TEST_F(SafeSaveFile, WheneverThePowerFailsTheOldOrTheNewOneIsThere) {
  for (const bool isThere : {true, false}) {
    std::filesystem::remove(folder / "docs" / "list.opml");
    if (isThere) WriteBytes(folder / "docs" / "list.opml", kOld);
    PowerLoss disk(folder / "docs");
    ASSERT_TRUE(Save(kNew)) << error.reason;
    const std::filesystem::path left = folder / "left";
    const int states = disk.ForEachState(left, [&](std::size_t call) {
      const bool exists = std::filesystem::exists(left / "list.opml");
      const std::string now = ReadBytes(left / "list.opml");
      ASSERT_TRUE(now == kNew || (isThere ? now == kOld : !exists)) << call;
      ASSERT_TRUE(call < disk.calls() || now == kNew) << "the save was done";
    });
    SayCount(states, "states that a loss of power leaves of a safe save");
    EXPECT_GT(states, 8);
  }
}

TEST_F(SafeSaveFile, RefusesAFileThatChangedSinceItWasLoaded) {
  const FileMark nothing = Mark();
  FileMark first;
  ASSERT_TRUE(Save("first", &nothing, &first));
  EXPECT_EQ(first, Mark());
  for (const char* other : {"other", "much longer"}) {
    WriteBytes(folder / "docs" / "list.opml", other);
    for (const FileMark* expected : {&std::as_const(nothing), &std::as_const(first)}) {
      EXPECT_FALSE(Save("second", expected));
      EXPECT_EQ(error.fault, DocumentFault::kChanged) << error.reason;
      EXPECT_EQ(Document(), other);
    }
  }
  EXPECT_STREQ(error.reason, "was changed since it was loaded: 5 bytes then, 11 bytes now");
  EXPECT_FALSE(ReadFileMark(W(folder / "docs"), &first, nullptr)) << "a folder has no bytes";
  if (!RunsOnWine() &&
      std::filesystem::exists("/proc/self/mem")) {  // which opens, and cannot be read at its start
    EXPECT_FALSE(ReadFileMark(W("/proc/self/mem"), &first, &error));
  }
  EXPECT_FALSE(SafeSave(path, nullptr, 0, &first, nullptr, nullptr)) << "nobody asks why";
  EXPECT_TRUE(Save("second"));
}

TEST_F(SafeSaveFile, OfManyWhoSaveAtOnceNoneIsLostWithoutAWord) {
  ASSERT_TRUE(Save("0"));
  std::atomic<int> saves = 0;
  const FastDisk fast;
  const auto addOne = [&] {
    for (int i = 0; i < 20; ++i) {
      FileMark mark;
      DocumentError ignored;
      if (!ReadFileMark(path, &mark, nullptr)) continue;
      const int number = std::atoi(Document().c_str());
      FileMark after;
      if (!ReadFileMark(path, &after, nullptr) || after != mark) continue;  // it has changed since
      const std::string next = std::to_string(number + 1);
      const FilePiece piece{next.data(), next.size()};
      if (SafeSave(path, &piece, 1, &mark, nullptr, &ignored)) ++saves;
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) threads.emplace_back(addOne);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(Document(), std::to_string(saves));
  EXPECT_TRUE(Save("the next"));
  EXPECT_EQ(Files(folder / "docs"), 1);
}

/// A file system without locks, which says so with this error.
class NoLocks : public FastDisk {
 public:
  explicit NoLocks(ULONG error) : error_(error) {}
  ULONG Before(const DiskCall& call, std::size_t* most) override {
    return call.kind == DiskCall::kLock ? error_ : FastDisk::Before(call, most);
  }

 private:
  const ULONG error_;
};

TEST_F(SafeSaveFile, GoesOnWithoutALockOnlyWhereTheFileSystemHasNone) {
  int without = 0;
  for (ULONG code = 1; code < 150; ++code) {
    if (code == 4) continue;  // interrupted: asked again for ever
    WriteBytes(folder / "docs" / "list.opml", kOld);
    const NoLocks disk(code);
    without += HasNoLocks(code);
    ASSERT_EQ(Save(kNew), HasNoLocks(code)) << code << error.reason;
    ASSERT_EQ(Document(), HasNoLocks(code) ? kNew : kOld) << code;
    std::filesystem::remove(folder / "docs" / "list.opml");
    ASSERT_EQ(Save(kNew), HasNoLocks(code)) << code << error.reason;
    ASSERT_EQ(Files(folder / "docs"), HasNoLocks(code)) << code;
  }
  EXPECT_GE(without, 2);
}

TEST_F(SafeSaveFile, RefusesWhatIsNoFileToWrite) {
  for (const std::filesystem::path& bad : {folder / "docs", folder / "no" / "file"}) {
    EXPECT_FALSE(SafeSave(W(bad), nullptr, 0, nullptr, nullptr, &error));
    EXPECT_EQ(error.fault, DocumentFault::kCannotOpen);
  }
  EXPECT_FALSE(SafeSave(nullptr, nullptr, 0, nullptr, nullptr, nullptr));
}

}  // namespace
}  // namespace vosmere::test
