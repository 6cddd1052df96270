#include "vosmere/net/connection_check.h"

#include "tests/support/loopback_server.h"
#include "tests/support/test.h"

namespace vosmere::test::connection_check {

TEST(InetSynch, PostsItsSampleToTheServerThatIsSet) {
  LoopbackServer server({ReplyOk()});
  CInetSynch::SetTestServer(W(server.host()));
  CInetSynch().UploadColct(nullptr, 1);
  CInetSynch::SetTestServer(nullptr);
  EXPECT_THAT(server.requests()[0],
              testing::AllOf(testing::StartsWith("POST /post.php HTTP/1.0\r\n"),
                             testing::HasSubstr("User-Agent: Vosmere\r\n"),
                             testing::EndsWith("\r\n\r\nname=Vosmere&type=test")));
}

}  // namespace vosmere::test::connection_check
