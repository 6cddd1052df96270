// `vosmere post`, run as users and scripts run it.
#include "tests/support/loopback_server.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "tests/support/tool.h"

namespace vosmere::test::post {

using testing::AllOf;
using testing::Not;

/// Posts a small file, with a password on the standard input.
Outcome Post(const std::string& host, const std::string& options = "") {
  const TempFolder folder;
  WriteBytes(folder / "in", "secret\n");
  WriteBytes(folder / "notes.txt", "one\ntwo\r\n");
  return RunTool("post " + host + " /up.php " + Quoted(folder / "notes.txt") + " --clean " +
                 options + " <" + Quoted(folder / "in"));
}

/// The request without the parts that differ from run to run.
std::string Normal(std::string request, const std::string& digest) {
  const std::string boundary = request.substr(request.find("boundary=") + 9, 36);
  for (const std::string& secret : {boundary, digest})
    for (std::size_t at; (at = request.find(secret)) != request.npos;)
      request.erase(at, secret.size());
  return request;
}

TEST(ToolPost, ADryRunPrintsTheVeryBytesButForTheDigest) {
  constexpr const char* kDigest = "5ebe2294ecd0e0f08eab7690d2a6ee69";
  LoopbackServer server({ReplyOk("stored\n")});
  const std::string options = "--user joe --field a=b=c --field \"d= \"";
  const Outcome sent = Post(server.host(), options);
  EXPECT_EQ(sent.exitCode, 0) << sent.errors;
  EXPECT_THAT(sent.out, HasSubstr("stored"));
  const Outcome shown = Post(server.host(), options + " --dry-run");
  EXPECT_EQ(shown.exitCode, 0) << shown.errors;

  const std::string request = server.requests().at(0);
  EXPECT_THAT(request, AllOf(HasSubstr(kDigest), HasSubstr("filename=\"notes.txt\""),
                             HasSubstr("name=\"a\"\r\n\r\nb=c\r\n"), Not(HasSubstr("secret"))));
  EXPECT_EQ(Normal(shown.bytes, std::string(32, '*')), Normal(request, kDigest));
}

TEST(ToolPost, PassesOnLoginProxyAndLimits) {
  LoopbackServer proxy({ReplyOk()}), silent({[](Peer&peer) { peer.WaitForClient(); }});
  EXPECT_EQ(Post("a.example", "--proxy " + proxy.host()).exitCode, 0);
  EXPECT_THAT(proxy.requests().at(0), testing::StartsWith("POST http://a.example"));
  EXPECT_EQ(Post(silent.host(), "--transfer-limit 0.2").exitCode, 2);
  if (RunsOnWine()) return;  // it does not answer when it is asked for a password
  LoopbackServer server(
      {Reply("HTTP/1.1 401 Who\r\nWWW-Authenticate: Basic realm=\"x\"\r\n\r\n"), ReplyOk()});
  EXPECT_EQ(Post(server.host(), "--login joe").exitCode, 0);
  EXPECT_THAT(server.requests().at(1), HasSubstr("Authorization: Basic am9lOnNlY3JldA=="));
}

TEST(ToolPost, SaysWhatWentWrong) {
  const struct {
    const char* host;
    std::string options;
    const char* error;
  } cases[] = {
      {"127.0.0.1:1", "", "127.0.0.1:1: error: the server cannot be reached"},
      {"127.0.0.1:x", "", "127.0.0.1:x: error: the host name is invalid"},
      {"127.0.0.1:x", "--dry-run", "127.0.0.1:x: error: the host name is invalid"},
      {"a.example", "--field ab", "is not NAME=VALUE"},
      {"a.example", "--field a=" + std::string(1024, 'x'), "the field 'a' is too long"},
      {"a.example", "--user " + std::string(81, 'x'), "the field 'username' is too long"},
      {"a.example", "--output no/such/folder", "no/such/folder: error: "},
      {"a.example", "--output x --dry-run", "--output excludes --dry-run"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Post(c.host, c.options);
    EXPECT_EQ(outcome.exitCode, 2) << c.options;
    EXPECT_THAT(outcome.errors, HasSubstr(c.error));
  }
}

TEST(ToolPost, SaysWhenTheServerHasNotTakenTheFile) {
  const struct {
    const char* reply;
    int exitCode;
    const char* out;
    const char* error;
  } cases[] = {
      {"HTTP/1.0 404 No\r\n\r\nwhat", 1, "what", ": error: the server answered 404"},
      {"HTTP/1.0 413 No\r\nContent-Length: 9\r\n\r\nbig", 1, "big",
       "notes.txt: error: the file is too large for the server (413)"},
      {"HTTP/1.0 303 Elsewhere\r\nLocation: /x\r\n\r\n", 1, "next",
       ": error: the server redirected the request, and the file was not delivered"},
      {"HTTP/1.0 302 Elsewhere\r\n\r\nhere", 1, "here",
       ": error: the server answered 302, and the file was not delivered"},
      {"HTTP/1.0 200 Fine\r\nContent-Length: 9\r\n\r\nhalf", 1, "",
       ": error: the file was sent, but the reply is incomplete"},
      {"", 2, "", ": error: the connection was closed before the reply"},
  };
  for (const auto& c : cases) {
    LoopbackServer server({Reply(c.reply), ReplyOk("next")});
    const Outcome outcome = Post(server.host());
    EXPECT_EQ(outcome.exitCode, c.exitCode) << c.error;
    EXPECT_EQ(outcome.out, c.out);
    EXPECT_THAT(outcome.errors, HasSubstr(c.error));
  }
}

TEST(ToolPost, AReplyThatIsTooLongIsCutUnlessItGoesToAFile) {
  constexpr std::size_t kMost = 3 * 2048;
  const TempFolder folder;
  LoopbackServer server({LongReply(kMost + 1)});
  const Outcome printed = Post(server.host(), "--reply-limit 5");
  EXPECT_EQ(printed.exitCode, 1);
  EXPECT_EQ(printed.bytes.size(), kMost);
  EXPECT_THAT(printed.errors, HasSubstr(": error: the reply is too long and was cut"));
  const Outcome written = Post(server.host(), "--output " + (folder / "reply").string());
  EXPECT_EQ(written.exitCode, 0) << written.errors;
  EXPECT_EQ(std::filesystem::file_size(folder / "reply"), kMost + 1);
  EXPECT_EQ(written.out, "");
}

TEST(ToolPost, WritesTheReplyAsItIs) {
  const TempFolder folder;
  const std::string bytes("\xFF\0\r\n", 4);
  const std::filesystem::path file = folder / "reply";
  LoopbackServer server({ReplyOk(bytes), ReplyOk(bytes), ReplyOk(),
                         Reply("HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\nshort")});
  EXPECT_EQ(Post(server.host(), "--output -").bytes, bytes);
  EXPECT_EQ(Post(server.host(), "--output " + file.string()).exitCode, 0);
  EXPECT_EQ(ReadBytes(file), bytes);
  if (std::filesystem::exists("/dev/full")) {
    EXPECT_THAT(Post(server.host(), "--output /dev/full").errors,
                HasSubstr("/dev/full: error: cannot be written: No space left"));
  } else {
    Post(server.host());
  }
  EXPECT_EQ(Post(server.host(), "--output " + file.string()).exitCode, 1);
  EXPECT_EQ(ReadBytes(file), bytes) << "half a reply does not replace the file";
}

}  // namespace vosmere::test::post
