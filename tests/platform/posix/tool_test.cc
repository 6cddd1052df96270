// `vosmere` with things that only Linux has: file names that are arbitrary bytes, pipes, a device
// that is always full, and a count of how often a file is opened.
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>

#include "tests/support/document.h"
#include "tests/support/loopback_server.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "tests/support/tool.h"
#include "vosmere/cpp/documents.h"

namespace vosmere::test::tool {

constexpr char kDocument[] =
    "<opml><head><title>t</title></head><body><outline text='Q&amp;A'/></body></opml>";

/// Counts how often a file is opened while this lives.
class OpenCount {
 public:
  explicit OpenCount(const std::filesystem::path& file) : events_(inotify_init1(IN_NONBLOCK)) {
    // Closing is watched as well, because equal events in a row are merged into one.
    EXPECT_GE(inotify_add_watch(events_, file.c_str(), IN_OPEN | IN_CLOSE), 0);
  }
  ~OpenCount() { close(events_); }

  /// The number since the last call.
  std::ptrdiff_t Take() {
    constexpr std::size_t kSize = sizeof(inotify_event);
    alignas(inotify_event) char events[64 * kSize];
    const ssize_t size = read(events_, events, sizeof events);
    std::ptrdiff_t opened = 0;
    for (std::size_t at = 0; size > 0 && at < static_cast<std::size_t>(size); at += kSize)
      opened += reinterpret_cast<const inotify_event*>(events + at)->mask & IN_OPEN ? 1 : 0;
    return opened;
  }

 private:
  int events_;
};

TEST(ToolPosix, EveryVerbOpensItsFileOnce) {
  const TempFolder folder;
  WriteBytes(folder / "in", kDocument);
  const std::string in = Quoted(folder / "in");
  OpenCount opened(folder / "in");
  for (const std::string& arguments : {"show " + in, "show --json " + in, "check " + in,
                                       "copy " + in + " -", "note " + in + " 'Q&A' -"}) {
    RunTool(arguments);
    EXPECT_EQ(opened.Take(), 1) << arguments;
  }
}

TEST(ToolPosix, AFileIsOpenedByTheNameThatTheSystemHasForIt) {
  const TempFolder folder;
  const std::filesystem::path latin = folder / "caf\xE9.opml", slashed = folder / "x\\z";
  std::filesystem::create_directory(folder / "x");
  WriteBytes(latin, Opml("<outline text='a'/>"));
  EXPECT_THAT(RunTool("show " + Quoted(latin)).out, HasSubstr("[folder] a"));
  EXPECT_EQ(RunTool("copy " + Quoted(latin) + " '" + slashed.string() + '\'').exitCode, 0);
  EXPECT_TRUE(std::filesystem::exists(slashed));
  EXPECT_TRUE(std::filesystem::is_empty(folder / "x"));
  EXPECT_EQ(RunTool("copy '" + slashed.string() + "' " + Quoted(latin)).exitCode, 0);
}

TEST(ToolPosix, AFullDiskIsTold) {
  const TempFolder folder;
  WriteBytes(folder / "in", Opml("<outline text='a'/>"));
  const std::string in = Quoted(folder / "in");
  for (const std::string& arguments :
       {"show " + in, "check --json " + in, "copy " + in + " -", "note " + in + " a -",
        std::string("date 1994-11-06"), std::string("--help")}) {
    const Outcome full = RunTool(arguments, "sh -c '\"$0\" \"$@\" >/dev/full' ");
    EXPECT_EQ(full.exitCode, 2) << arguments;
    EXPECT_THAT(full.errors, HasSubstr("the output cannot be written: No space left on device"));
  }
  EXPECT_EQ(RunTool("favorites " + Quoted(folder / "") + " --rss /dev/full").exitCode, 2);
}

TEST(ToolPosix, OnlyPostingNeedsLibcurl) {
  const TempFolder folder;
  WriteBytes(folder / "in", kDocument);
  WriteBytes(folder / "libcurl.so.4", "");
  const std::string without = "LD_LIBRARY_PATH=" + Quoted(folder / "") + ' ',
                    in = Quoted(folder / "in");
  EXPECT_EQ(RunTool("check " + in, without).exitCode, 0);
  const Outcome post = RunTool("post localhost:1 /x " + in, without);
  EXPECT_EQ(post.exitCode, 2);
  EXPECT_THAT(post.errors, HasSubstr("error 12004"));
}

TEST(ToolPosix, ASlowUploadShowsABarAndItsReplyDoesNotSteerTheTerminal) {
  const TempFolder folder;
  WriteBytes(folder / "in", std::string(16'000'000, 'x'));  // more than the sockets buffer
  LoopbackServer server({[](Peer& peer) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    ReplyOk("a\x1B[31m\r\nb\tc\u009B")(peer);
  }});
  const Outcome seen = RunTool("post " + server.host() + " / " + (folder / "in").string(),
                               "sh -c 'script -qec \"$*\" /dev/null' sh ");
  EXPECT_THAT(seen.out, testing::AllOf(HasSubstr("[" + std::string(40, '#') + "] 100% of 16.0 MB"),
                                       HasSubstr("\na\\u001B[31m\nb\tc\\u009B\n")));
}

TEST(ToolPosix, ADocumentThatComesOnlyOnceIsReadButNotWithoutEnd) {
  const TempFolder folder;
  WriteBytes(folder / "in", kDocument);
  const std::string piped = "cat " + Quoted(folder / "in") + " | ";
  for (const char* const file : {"-", "/dev/stdin"})
    EXPECT_THAT(RunTool(std::string("check ") + file, piped).out, HasSubstr(": fine"));
  std::istringstream endless(std::string(100'000, '<'));
  EXPECT_FALSE(detail::ReadAll(endless, 1000));
  const std::string limit = kSanitized ? "" : "ulimit -d 16000; ";
  EXPECT_EQ(RunTool("check /dev/zero", limit).exitCode, 1);
  EXPECT_EQ(RunTool("check - </").exitCode, 2);
}

TEST(ToolPosix, ACheckTakesAtMostTwiceTheMemoryOfTheItems) {
  if (kSanitized) GTEST_SKIP() << "takes memory of its own";
  constexpr int kOutlines = 50'000;
  constexpr std::size_t kItem = sizeof(RNode) + sizeof(CFolderNode) + 2 * sizeof(void*);
  constexpr std::size_t kProgram = 16'000'000;
  const TempFolder folder;
  std::string outlines;
  for (int i = 0; i < kOutlines; ++i) outlines += "<outline/>";
  WriteBytes(folder / "in", Opml(outlines));
  const std::size_t limit = (kProgram + 2 * kOutlines * kItem) / 1024;
  EXPECT_EQ(RunTool("check " + Quoted(folder / "in"), "ulimit -d " + std::to_string(limit) + "; ")
                .exitCode,
            0);
}

}  // namespace vosmere::test::tool
