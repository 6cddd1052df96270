#include "vosmere/platform/internal/http_message.h"

#include "tests/support/test.h"

namespace vosmere::test::http_message {

TEST(HttpMessage, AHostMayCarryAPort) {
  const struct {
    const char* host;
    bool secure;
    const char* parsed;  // null for a host that is none
  } cases[] = {
      {"a.example", false, "a.example 80 a.example"},
      {"a.example", true, "a.example 443 a.example"},
      {"a.example:8080", false, "a.example 8080 a.example:8080"},
      {"a.example:80", false, "a.example 80 a.example"},
      {"a.example:80", true, "a.example 80 a.example:80"},
      {"[::1]", false, "[::1] 80 [::1]"},
      {"[::1]:8080", false, "[::1] 8080 [::1]:8080"},
      {"xn--e1afmkfd", false, "xn--e1afmkfd 80 xn--e1afmkfd"},
      {"пример", false, nullptr},
      {"", false, nullptr},
      {":80", false, nullptr},
      {"a:", false, nullptr},
      {"a:0", false, nullptr},
      {"a:65536", false, nullptr},
      {"a:8o", false, nullptr},
      {"a b", false, nullptr},
      {"a/b", false, nullptr},
      {"me@a", false, nullptr},
      {"a\r\nX: y", false, nullptr},
  };
  for (const auto& c : cases) {
    http::Address address;
    std::string parsed = "none";
    if (http::ParseAddress(W(std::string(c.host)), c.secure, &address))
      parsed = address.name + ' ' + std::to_string(address.port) + ' ' + address.Text();
    EXPECT_EQ(parsed, c.parsed ? c.parsed : "none") << c.host;
  }
  http::Address address;
  EXPECT_FALSE(http::ParseAddress(nullptr, false, &address));
}

TEST(HttpMessage, APathCannotLeaveItsLine) {
  EXPECT_EQ(http::RequestTarget(nullptr), "/");
  EXPECT_EQ(http::RequestTarget(W("post.php")), "/post.php");
  EXPECT_EQ(http::RequestTarget(W("/a b\r\n#x%20?q=\"é\"")), "/a%20b%0D%0A%23x%20?q=\"%C3%A9\"");
}

}  // namespace vosmere::test::http_message
