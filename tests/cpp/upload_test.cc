#include "vosmere/cpp/upload.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "tests/support/loopback_server.h"

namespace vosmere {
namespace {

using test::LoopbackServer;
using testing::HasSubstr;

class UploadTest : public testing::Test {
 protected:
  UploadTest() { test::WriteBytes(folder_ / "list.opml", "<opml/>"); }

  const test::TempFolder folder_;
  const std::u16string file_ = (folder_ / "list.opml").u16string();
};

TEST_F(UploadTest, SendsFieldsAndAFileAndTellsTheReply) {
  LoopbackServer server(
      {test::Reply("HTTP/1.0 404 Not Found\r\nContent-Length: 3\r\n\r\n\xE2\x82\xAC")});
  std::uint32_t seen = 0, all = 1;
  const Result<Reply> reply = Upload(server.host(), "/in")
                                  .Field("täg", "ä b")
                                  .OnProgress([&](auto sent, auto total) {
                                    seen = sent, all = total;
                                    return true;
                                  })
                                  .SendFile(file_);
  ASSERT_TRUE(reply) << reply.error();
  EXPECT_EQ(reply->status, 404);
  EXPECT_FALSE(reply->IsOk());
  EXPECT_EQ(reply->text, "€");
  EXPECT_EQ(seen, all);
  EXPECT_THAT(server.requests()[0],
              testing::AllOf(HasSubstr("POST /in "), HasSubstr("name=\"täg\"\r\n\r\nä b\r\n"),
                             HasSubstr("<opml/>")));
}

TEST_F(UploadTest, SendsATextOnce) {
  LoopbackServer server({test::ReplyOk("thanks")});
  Upload upload(server.host(), "/in");
  const Result<Reply> reply = upload.SendText("list.opml", u"<opml>€</opml>");
  ASSERT_TRUE(reply && reply->IsOk()) << reply.error();
  EXPECT_EQ(reply->text, "thanks");
  EXPECT_EQ(upload.SendText("list.opml", "x").error().reason, "this upload has already been sent");
  ASSERT_EQ(server.requests().size(), 1u);
  EXPECT_THAT(server.requests()[0], HasSubstr("<opml>€</opml>"));
}

TEST_F(UploadTest, SaysWhatFailedAndOfWhat) {
  LoopbackServer server({test::ReplyOk()});
  EXPECT_EQ(ToString(Upload(server.host(), "/").SendFile("no such file").error()),
            "no such file: the file does not exist");
  EXPECT_EQ(ToString(Upload(server.host(), "/")
                         .Field("a", std::string(1024, 'x'))
                         .Field("b", "c")
                         .SendFile(file_)
                         .error()),
            server.host() + ": the field 'a' does not fit into the form");
  Upload upload(server.host(), "/");
  bool hasThrown = false;
  try {
    const test::FailingMemory memory(0);
    upload.Field("a", "b");
  } catch (const std::bad_alloc&) {
    hasThrown = true;
  }
  EXPECT_TRUE(hasThrown);
  EXPECT_EQ(ToString(Upload(server.host(), "/")
                         .OnProgress([](auto, auto) { return false; })
                         .SendFile(file_)
                         .error()),
            server.host() + ": the upload was cancelled");
  const std::string nobody = [] { return LoopbackServer({test::ReplyOk()}).host(); }();
  const Result<Reply> none = Upload(nobody, "/").SendText("a", "b");
  EXPECT_EQ(ToString(none.error()), nobody + ": the server cannot be reached");
  EXPECT_EQ(none.error().systemError, 12029u);
}

}  // namespace
}  // namespace vosmere
