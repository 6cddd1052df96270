#include "vosmere/net/net_upload_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/loopback_server.h"
#include "tests/support/sender.h"
#include "tests/support/traces.h"

namespace vosmere::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += with.size())
    text.replace(at, what.size(), with);
  return text;
}

/// The request with its varying parts in capitals.
std::string Golden(const std::string& request, const Sender& sender, const LoopbackServer& server) {
  return Replaced(Replaced(request, sender.file().string(), "PATH"), server.host(), "HOST");
}

TEST(NetUploadFile, SendsTheWholeFileWithItsFields) {
  LoopbackServer server({ReplyOk("stored")});
  Sender sender(server.host(), std::string("\0\x1A\xFF\r\n", 5));
  sender.upload.SetPostAcceptor(W("/up load.php?a=1"));
  sender.upload.AddParameter(W("ключ"), W("один"));
  sender.upload.AddParameter(W("second"), nullptr);
  EXPECT_EQ(sender.Send(), 0);
  EXPECT_EQ(sender.upload.GetStatus(), 200);
  EXPECT_EQ(sender.Response(), "stored");

  const std::string body =
      "--BOUNDARY\r\n"
      "Content-Disposition: form-data; name=\"WholeFile\";filename=\"PATH\"\r\n"
      "Content-Type: application/upload\r\n"
      "\r\n" +
      std::string("\0\x1A\xFF\r\n", 5) +
      "\r\n--BOUNDARY\r\n"
      "Content-Disposition: form-data; name=\"ключ\"\r\n"
      "\r\n"
      "один"
      "\r\n--BOUNDARY\r\n"
      "Content-Disposition: form-data; name=\"second\"\r\n"
      "\r\n"
      "\r\n--BOUNDARY--\r\n";
  const std::size_t length = body.size() - 4 + sender.file().string().size();
  EXPECT_EQ(Golden(server.requests()[0], sender, server),
            "POST /up%20load.php?a=1 HTTP/1.0\r\n"
            "Accept: */*\r\n"
            "Content-Type: multipart/form-data, boundary=BOUNDARY\r\n"
            "Host: HOST\r\n"
            "Content-Length: " +
                std::to_string(length) +
                "\r\n"
                "User-Agent: Vosmere Post\r\n"
                "Cache-Control: no-cache\r\n"
                "Connection: Keep-Alive\r\n"
                "\r\n" +
                body);
}

}  // namespace
}  // namespace vosmere::test
