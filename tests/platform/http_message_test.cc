#include "vosmere/platform/internal/http_message.h"

#include "tests/support/test.h"

namespace vosmere::test::http_message {

TEST(HttpMessage, AHostMayCarryAPort) {
  for (const auto& row : TestTable("hosts.txt")) {
    http::Address parsed;
    std::string told = "none";
    if (http::ParseAddress(W(row[0]), row[1] == "1", &parsed))
      told = parsed.name + ' ' + std::to_string(parsed.port) + ' ' + parsed.Text();
    EXPECT_EQ(told, row[2]) << row[0];
  }
  http::Address address;
  EXPECT_FALSE(http::ParseAddress(nullptr, false, &address));
}

TEST(HttpMessage, APathCannotLeaveItsLine) {
  EXPECT_EQ(http::RequestTarget(nullptr), "/");
  EXPECT_EQ(http::RequestTarget(W("post.php")), "/post.php");
  EXPECT_EQ(http::RequestTarget(W("/a b\r\n#x%20?q=\"é\"")), "/a%20b%0D%0A%23x%20?q=\"%C3%A9\"");
}

TEST(HttpMessage, AHeaderReplacesTheOneOfItsNameInAnyLetterCase) {
  http::RequestHead head;
  for (const char* line : {"Content-Type: a", "X: 1", "content-TYPE: b", "Content: c"})
    head.Set(line);
  EXPECT_EQ(head.added, (std::vector<std::string>{"X: 1", "content-TYPE: b", "Content: c"}));
}

}  // namespace vosmere::test::http_message
