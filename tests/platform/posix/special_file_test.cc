// Paths that are not regular files: pipes, devices, and files that the system generates.
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <thread>
#include <utility>

#include "tests/support/document.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/text/read_file.h"
#include "vosmere/text/write_file.h"

namespace vosmere::test::special_file {

/// A pipe whose two ends the test holds until it closes them.
class Pipe {
 public:
  Pipe() {
    const std::string name = folder_ / "pipe";
    EXPECT_EQ(mkfifo(name.c_str(), 0600), 0);
    readEnd_ = open(name.c_str(), O_RDONLY | O_NONBLOCK);
    writeEnd_ = open(name.c_str(), O_WRONLY);
  }
  ~Pipe() { Leave(); }

  Wide path() const { return W(folder_ / "pipe"); }
  void Write(const std::string& bytes) {
    EXPECT_EQ(write(writeEnd_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  /// What is in the pipe now.
  std::string Read() {
    char bytes[4096];
    const ssize_t count = read(readEnd_, bytes, sizeof bytes);
    return {bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }
  void EndWriting() { close(std::exchange(writeEnd_, -1)); }
  void Leave() {
    EndWriting();
    close(std::exchange(readEnd_, -1));
  }

 private:
  TempFolder folder_;
  int readEnd_;
  int writeEnd_;
};

TEST(SpecialFile, APipeIsNoPlainFileAndNobodyWaitsForIt) {
  Pipe pipe;
  for (int withoutOtherEnd = 0; withoutOtherEnd < 2; ++withoutOtherEnd, pipe.Leave()) {
    CReadFile reader;
    CWriteFile writer;
    EXPECT_FALSE(reader.OpenFile(pipe.path()));
    EXPECT_FALSE(writer.OpenFile(pipe.path()));
    EXPECT_FALSE(writer.OpenFileAppend(pipe.path()));
  }
}

TEST(SpecialFile, ADocumentMayComeThroughAPipeHoweverSlowly) {
  Pipe pipe;
  std::thread writer([&] {
    std::string document = " <opml><body><outline text=\"a\"/>";
    for (int i = 0; i < 200; ++i) document += "😀";
    document += "</body></opml>";
    for (std::size_t at = 0; at < document.size(); at += 13) {
      pipe.Write(document.substr(at, 13));
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    pipe.EndWriting();
  });
  CReadColctTreeOPML reader;
  EXPECT_TRUE(reader.LoadFile(pipe.path())) << reader.LastError().reason;
  writer.join();
  EXPECT_NE(TreePtr(reader.DetachTreeRoot())["a"], nullptr);

  pipe.Leave();
  EXPECT_FALSE(reader.LoadFile(pipe.path())) << "nobody writes";
  CWriteColctTreeOPML opml;
  EXPECT_FALSE(opml.SaveToFile(pipe.path())) << "nobody reads";
}

TEST(SpecialFile, AWriteThatTheSystemTakesInPartsIsWhole) {
  struct sigaction interrupt = {}, old;
  interrupt.sa_handler = [](int) {};
  sigaction(SIGUSR1, &interrupt, &old);
  std::string whole, got;
  while (whole.size() < 1000000) whole += std::to_string(whole.size());

  Pipe pipe;
  std::atomic<bool> written = false, done = false;
  std::thread writer([&] {
    File file;
    const std::size_t half = whole.size() / 2;
    const FilePiece pieces[] = {{whole.data(), half}, {whole.data() + half, whole.size() - half}};
    written = file.Create(pipe.path(), Waiting::kAllowed) && file.Write(pieces, 2);
    done = true;
  });
  for (bool last = false; !last;) {
    last = done;
    for (std::string part; !(part = pipe.Read()).empty(); got += part)
      pthread_kill(writer.native_handle(), SIGUSR1);
  }
  writer.join();
  EXPECT_TRUE(written);
  EXPECT_TRUE(got == whole);
  sigaction(SIGUSR1, &old, nullptr);
}

TEST(SpecialFile, ADeviceGivesWhatItHasAndASizeThatIsNotTrueDoesNoHarm) {
  const struct {
    const char* path;
    int bytesRead;
    bool textFails;
  } cases[] = {{"/dev/null", 0, false},
               {"/dev/zero", 3, true},  // endless
               {"/proc/self/mem", 0, true}};
  CReadFile reader;
  char bytes[3], *whole = nullptr;
  BSTR text = nullptr;
  int count;
  for (const auto& c : cases) {
    ASSERT_TRUE(reader.OpenFile(W(std::string(c.path))));
    EXPECT_EQ(reader.GetFileSize(), 0u);
    EXPECT_EQ(reader.ReadToBuffer(bytes, 3), c.bytesRead);
    EXPECT_FALSE(reader.ReadToBuffer(&whole, &count));
    EXPECT_EQ(reader.ReadAllToBuffer(&text), 0);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(reader.ReadFailed(), c.textFails) << c.path;
  }
  ASSERT_TRUE(reader.OpenFile(W("/proc/self/status")));
  EXPECT_EQ(reader.GetFileSize(), 0u);
  EXPECT_GT(reader.ReadAllToBuffer(&text), 100);
  EXPECT_EQ(OwnedBstr(text).utf8().substr(0, 5), "Name:");
  // The system gives the size of a whole page for this file.
  if (!reader.OpenFile(W("/sys/devices/system/cpu/online"))) GTEST_SKIP();
  ASSERT_TRUE(reader.ReadToBuffer(&whole, &count));
  EXPECT_LT(count, static_cast<int>(reader.GetFileSize()));
  EXPECT_EQ(whole[count - 1], '\n');
  CReadFile::Delete(whole);
  File file;
  FileMapping mapping;
  ASSERT_TRUE(file.Open(W("/sys/devices/system/cpu/online")));
  EXPECT_FALSE(mapping.Create(file));
  EXPECT_EQ(mapping.error(), ULONG{ENODEV});
}

/// The result of a save to a full disk.
void ExpectNoSpace(const Wide& path) {
  const TreePtr tree = Tree("root(a)");
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(tree);
  EXPECT_FALSE(writer.SaveToFile(path));
  EXPECT_EQ(writer.LastError().fault, DocumentFault::kCannotWrite);
  EXPECT_EQ(writer.LastError().systemError, ULONG{ENOSPC});
}

TEST(SpecialFile, AWriteHas200MillionBytesAtMostAndAFullDeviceTakesNone) {
  constexpr int kMost = 200'000'000;
  const std::unique_ptr<char[]> bytes(new char[kMost + 1]);  // never touched
  CWriteFile writer;
  ASSERT_TRUE(writer.OpenFile(W("/dev/null")));
  EXPECT_TRUE(writer.WriteStreamData(bytes.get(), kMost));
  EXPECT_FALSE(writer.WriteStreamData(bytes.get(), kMost + 1));
  ASSERT_TRUE(writer.OpenFile(W("/dev/full")));
  EXPECT_FALSE(writer.WriteData(W("x")));
  EXPECT_FALSE(writer.WriteStreamData("x", 1));
  EXPECT_EQ(writer.SystemError(), ULONG{ENOSPC});
  EXPECT_TRUE(writer.CloseFile());
  ExpectNoSpace(W("/dev/full"));
}

/// Makes every later close() of this thread fail with ENOSPC, as a full network disk does. False if
/// the system does not allow that.
bool FailEveryClose() {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_close, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSPC),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog filter = {std::size(program), program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST(SpecialFile, ADiskThatIsFullOnlyWhenTheFileIsClosedIsAFailedWrite) {
  const TempFolder folder;
  const Wide path = W(folder / "file");
  bool possible = false;
  std::thread([&] {
    CWriteFile writer;
    ASSERT_TRUE(writer.OpenFile(path) && writer.WriteData(W("x")));
    possible = FailEveryClose();
    if (!possible) return;
    EXPECT_FALSE(writer.CloseFile());
    EXPECT_EQ(writer.SystemError(), ULONG{ENOSPC});
    ExpectNoSpace(path);
  }).join();
  if (!possible) GTEST_SKIP() << "the system does not allow it";
}

}  // namespace vosmere::test::special_file
