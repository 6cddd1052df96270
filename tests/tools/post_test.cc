// `vosmere post`, run as users and scripts run it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/files.h"
#include "tests/support/loopback_server.h"

namespace vosmere::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct Outcome {
  int exitCode;
  std::string out;
  std::string errors;
};

/// Posts a small file, with a password on the standard input.
Outcome Post(const std::string& host, const std::string& options = "") {
  const TempFolder folder;
  const auto quoted = [](std::filesystem::path path) {
    return '"' + path.make_preferred().string() + '"';
  };
  WriteBytes(folder / "in", "secret\n");
  WriteBytes(folder / "notes.txt", "one\ntwo\r\n");
  const int status = std::system(("cd . && " + quoted(VOSMERE_TOOL) + " post " + host +
                                  " /up.php " + quoted(folder / "notes.txt") + " --clean " +
                                  options + " <" + quoted(folder / "in") + " >" +
                                  quoted(folder / "out") + " 2>" + quoted(folder / "errors"))
                                     .c_str());
  return {status > 255 ? status / 256 : status, ReadBytes(folder / "out"),
          ReadBytes(folder / "errors")};
}

/// With what differs from run to run in its place.
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
  EXPECT_EQ(Normal(shown.out, std::string(32, '*')), Normal(request, kDigest));
}

TEST(ToolPost, SaysWhatWentWrong) {
  LoopbackServer server({Reply("HTTP/1.0 404 No\r\n\r\nnothing here")});
  const Outcome refused = Post(server.host());
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.out, HasSubstr("nothing here"));
  EXPECT_THAT(refused.errors, HasSubstr("the server answers 404"));

  const struct {
    const char* host;
    std::string options;
    const char* error;
  } cases[] = {
      {"127.0.0.1:1", "", "the server cannot be reached"},
      {"127.0.0.1:x", "", "no name of a host"},
      {"a.example", "--field ab", "is not NAME=VALUE"},
      {"a.example", "--field a=" + std::string(1024, 'x'), "the field 'a' is too long"},
      {"a.example", "--user " + std::string(81, 'x'), "the field 'username' is too long"},
  };
  for (const auto& c : cases) {
    const Outcome outcome = Post(c.host, c.options);
    EXPECT_EQ(outcome.exitCode, 2) << c.options;
    EXPECT_THAT(outcome.errors, HasSubstr(c.error));
  }
}

}  // namespace
}  // namespace vosmere::test
