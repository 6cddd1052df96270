// Uploads through a real server with TLS.

#include <memory>
#include <optional>

#include "tests/support/loopback_server.h"
#include "tests/support/nginx.h"
#include "tests/support/platform.h"
#include "tests/support/sender.h"
#include "tests/support/test.h"

namespace vosmere::test::https {

using testing::AllOf;
using testing::EndsWith;
using testing::SizeIs;
using testing::StartsWith;

class Https : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!Nginx::IsInstalled()) return;
    nginx_ = std::make_unique<Nginx>(
        "client_max_body_size 100m;"
        "location /upload { proxy_pass http://127.0.0.1:$arg_port; }"
        "location /private { auth_basic x; auth_basic_user_file users;"
        "  proxy_pass http://127.0.0.1:$arg_port; }"
        "location /small { client_max_body_size 1k; proxy_pass http://127.0.0.1:1; }"
        "location /again { return 307 https://127.0.0.1:PORT/upload?$args; }"
        "location /plain { return 302 http://127.0.0.1:PORT/upload; }"
        "location /drop { return 444; }");
  }
  static void TearDownTestSuite() { nginx_.reset(); }

  void SetUp() override {
    if (!nginx_) GTEST_SKIP() << "nginx or openssl is not installed";
    ASSERT_TRUE(nginx_->runs());
    trusted_.emplace("SSL_CERT_FILE", nginx_->certificate().c_str());
  }

  /// The result of an upload to that path, which may redirect to the other server.
  LONG Send(Sender& sender, const std::string& path) {
    sender.upload.SetSecure(true);
    sender.upload.SetPostAcceptor(W(path + "?port=" + std::to_string(behind.port())));
    return sender.Send();
  }

  LoopbackServer behind{{ReplyOk("stored")}};
  std::optional<Variable> trusted_;
  static inline std::unique_ptr<Nginx> nginx_;
};

TEST_F(Https, TheBodyArrives) {
  const std::string bytes(5000000, 'x');
  Sender sender(nginx_->host(), bytes);
  EXPECT_EQ(Send(sender, "/upload"), 0);
  EXPECT_EQ(sender.Response(), "stored");
  EXPECT_THAT(behind.requests()[0],
              AllOf(HasSubstr("Content-Type: multipart/form-data, boundary=BOUNDARY\r\n"),
                    EndsWith("\r\n\r\n" + bytes + "\r\n--BOUNDARY--\r\n")));
}

TEST_F(Https, OnlyTheRightServerIsTrusted) {
  Sender other("localhost:" + std::to_string(nginx_->port()));
  EXPECT_EQ(Send(other, "/upload"), Code(12038)) << "a certificate for another name";
  LoopbackServer plain({[](Peer& peer) {
    peer.ReadBytes(1);
    peer.Send("HTTP/1.0 400 Plain HTTP only\r\n\r\n");
  }});
  Sender insecure(plain.host());
  EXPECT_EQ(Send(insecure, "/upload"), Code(12157));
  trusted_.reset();
  Sender untrusted(nginx_->host());
  EXPECT_EQ(Send(untrusted, "/upload"), Code(12045));
  const Variable missing("SSL_CERT_FILE", "no-such-file");
  EXPECT_EQ(Send(untrusted, "/upload"), Code(12045));
}

TEST_F(Https, ThePasswordIsSentWhenTheServerAsks) {
  Sender sender(nginx_->host(), std::size_t{3000000});
  sender.upload.SetUserName(W("joe"));
  sender.upload.SetPassword(W("secret"));
  EXPECT_EQ(Send(sender, "/private"), 0);
  EXPECT_EQ(sender.upload.GetStatus(), 200);
  EXPECT_EQ(sender.Response(), "stored");
  sender.upload.SetPassword(W("wrong"));
  EXPECT_EQ(Send(sender, "/private"), 0);
  EXPECT_EQ(sender.upload.GetStatus(), 401);
  EXPECT_THAT(behind.requests(), SizeIs(1));
}

TEST_F(Https, ABodyThatIsTooLargeGetsItsReply) {
  Sender sender(nginx_->host(), std::size_t{20000000});
  EXPECT_EQ(Send(sender, "/small"), 0);
  EXPECT_EQ(sender.upload.GetStatus(), 413);
  EXPECT_THAT(sender.Response(), HasSubstr("Too Large"));
  EXPECT_EQ(Send(sender, "/drop"), Code(12030)) << "hangs up";
}

TEST_F(Https, ARedirectLeadsOnlyToHttps) {
  Sender sender(nginx_->host());
  EXPECT_EQ(Send(sender, "/again"), 0);
  EXPECT_EQ(Send(sender, "/plain"), Code(12040));
  EXPECT_THAT(behind.requests(), testing::ElementsAre(StartsWith("POST /upload?port=")));
}

}  // namespace vosmere::test::https
