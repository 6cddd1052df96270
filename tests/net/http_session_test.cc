#include "vosmere/net/http_session.h"

#include "tests/support/platform.h"
#include "tests/support/sender.h"
#include "tests/support/test.h"
#include "vosmere/net/connection_check.h"

namespace vosmere::test::http_session {

std::string Response(CNetBase& net) {
  return OwnedBstr(net.DetachResponse()).utf8();
}

/// Sends a form to the server; the result of reading the reply.
int Exchange(CNetBase& net, const LoopbackServer& server) {
  net.SetHost(W(server.host()));
  net.SetPostAcceptor(W("post.php"));
  EXPECT_EQ(net.OpenSessionConnection(), 0);
  const int sent = net.SendForm();
  return sent ? sent : net.ReadServerResponse(net.GetRequest());
}

TEST(NetBase, PostsAFormAndReadsTheReplyAsOftenAsIsWanted) {
  LoopbackServer server({ReplyOk("Grüße"),
                         Reply("HTTP/1.0 302 Elsewhere\r\nLocation: /moved\r\n\r\n"),
                         ReplyOk("moved"), ReplyOk("here")});
  CNetBase net;
  net.AddParameter(W("a"), W("1"));
  net.AddParameter(W("b"), W("2"));
  EXPECT_EQ(Exchange(net, server), 7);
  EXPECT_EQ(Response(net), "Grüße");
  EXPECT_EQ(Response(net), "(null)");
  EXPECT_FALSE(net.WasRedirected());
  EXPECT_EQ(Exchange(net, server), 5);
  EXPECT_TRUE(net.WasRedirected());
  EXPECT_EQ(net.SendForm(), 0);
  EXPECT_FALSE(net.WasRedirected());
  EXPECT_EQ(net.ReadServerResponse(net.GetRequest()), 4);
  EXPECT_EQ(Response(net), "movedhere");
  for (const int form : {0, 3}) EXPECT_EQ(server.requests()[form], GoldenRequest("form", server));
}

TEST(NetBase, LosesNothing) {
  const auto open = [] {
    CNetBase net;
    net.SetHost(W("a.example"));
    EXPECT_EQ(net.OpenSessionConnection(), 0);
  };
  open();  // the system allocates some memory once
  const long before = LiveAllocations();
  open();
  EXPECT_EQ(LiveAllocations(), before);
}

TEST(NetBase, ParametersAreNotEscapedAndHave1024Bytes) {
  const struct {
    std::vector<std::size_t> lengths;
    std::size_t used;
  } cases[] = {{{338, 339, 339}, 1024},
               {{338, 339, 340}, 682},
               {{1021}, 1023},
               {{1022}, 0}};  // would fit, but an "&" counts before the first, too
  for (const auto& c : cases) {
    CNetBase net;
    for (const std::size_t length : c.lengths) net.AddParameter(W("a"), Repeated(length));
    EXPECT_EQ(std::string(net.GetParaString()).size(), c.used);
  }
  CNetBase net;
  net.AddParameter(W("ключ"), W("x&y = z"));
  net.AddParameter(nullptr, W("x"));
  net.AddParameter(W("x"), nullptr);
  EXPECT_STREQ(net.GetParaString(), "ключ=x&y = z");
}

TEST(NetBase, UserAndDigestGoTogetherAndLongOnesAreIgnored) {
  CNetBase net;
  EXPECT_EQ(net.GetFormUserNamePswString(), nullptr);
  net.SetUserNamePswMD5(W("me"), W("d1"));
  net.SetUserNamePswMD5(Repeated(81), W("d2"));
  net.SetUserNamePswMD5(W("you"), Repeated(81));
  net.SetVSMUserName(Repeated(81));
  EXPECT_STREQ(net.GetParaString(), "username=me&pswmd5=d1");
  EXPECT_STREQ(net.GetFormUserNamePswString(), "username=me&pswmd5=d1");

  std::string name;
  for (int i = 0; i < 60; ++i) name += "ж";
  net.SetVSMUserName(W(name));
  net.SetPswMD5(Repeated(199 - 17 - name.size()));
  EXPECT_EQ(std::string(net.GetFormUserNamePswString()).size(), 199u);
  net.SetPswMD5(Repeated(200 - 17 - name.size()));
  EXPECT_EQ(net.GetFormUserNamePswString(), nullptr);
}

TEST(NetBase, ACharacterThatARead2048BytesLongSplitsIsNotJoined) {
  // Two bytes of the character are one ill-formed part before the split; after it each byte is one.
  const char* const shown[] = {"€", "\uFFFD\uFFFD", "\uFFFD\uFFFD\uFFFD", "€"};
  for (int bytesBefore = 3; bytesBefore >= 0; --bytesBefore) {
    const std::string before(2048 - bytesBefore, 'x');
    LoopbackServer server({ReplyOk(before + "€y")});
    CNetBase net;
    EXPECT_EQ(Exchange(net, server), static_cast<int>(before.size()) + 4);
    EXPECT_EQ(Response(net), before + shown[3 - bytesBefore] + "y") << bytesBefore;
  }
}

TEST(NetBase, AReplyIsKeptUpToALimitOrHandedOn) {
  constexpr int kMostPieces = 10000, kMostKept = kMostPieces * 2048;
  LoopbackServer server({ReplyOk(), LongReply(2 * kMostKept + 4), LongReply(kMostKept)});
  CNetBase net, first;
  Exchange(first, server);  // loads the HTTP library
  EXPECT_EQ(net.GetMostPieces(), 50000u);
  net.SetMostPieces(kMostPieces);
  int read = 0, taken = 0;
  const std::size_t kept = PeakMemory([&] {
    read = Exchange(net, server);
    EXPECT_EQ(OwnedBstr(net.DetachResponse()).size() * 2, kMostKept);
  });
  EXPECT_EQ(read, kMostKept);
  EXPECT_TRUE(net.IsResponseCut());
  EXPECT_LE(kept, kMostKept / 2 * 3) << "it is never in memory twice";

  const auto count = [](void* context, const void*, std::size_t size) {
    *static_cast<int*>(context) += static_cast<int>(size);
    return true;
  };
  net.SetResponseSink(count, &taken);
  EXPECT_LE(PeakMemory([&] { read = net.ReadServerResponse(net.GetRequest()); }), 8'000'000u);
  EXPECT_EQ(read, kMostKept + 4);
  EXPECT_EQ(taken, read);
  EXPECT_FALSE(net.IsResponseCut());

  net.SetResponseSink(nullptr, nullptr);
  EXPECT_EQ(Exchange(net, server), kMostKept);
  EXPECT_FALSE(net.IsResponseCut());
}

TEST(NetBase, SaysWhichStepFailed) {
  CNetBase net;
  EXPECT_EQ(net.ReadServerResponse(nullptr), -5);
  EXPECT_EQ(net.SendForm(), -5);
  net.SetHost(W("no such host"));
  EXPECT_EQ(net.OpenSessionConnection(), -4);
  net.SetHost(W("127.0.0.1:1"));
  EXPECT_EQ(net.OpenSessionConnection(), 0);
  EXPECT_EQ(net.SendForm(), -6);

  LoopbackServer server({Reply("HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\nshort")});
  EXPECT_EQ(Exchange(net, server), -7);
  EXPECT_EQ(Response(net), "short");
  net.SetResponseSink([](void*, const void*, std::size_t) { return false; }, nullptr);
  EXPECT_EQ(Exchange(net, server), -7);

  LoopbackServer other({ReplyOk("reply")});
  net.SetResponseSink(nullptr, nullptr);
  net.SetHost(W(other.host()));
  EXPECT_EQ(net.OpenSessionConnection() + net.SendForm(), 0);
  const FailingMemory memory(0);
  EXPECT_EQ(net.ReadServerResponse(net.GetRequest()), -7);
}

TEST(InetSynch, PostsItsSampleToTheServerThatIsSet) {
  LoopbackServer server({ReplyOk()});
  const Hooked<CInetSynch::SetTestServer> host(W(server.host()));
  CInetSynch().UploadColct(nullptr, 1);
  EXPECT_THAT(server.requests()[0],
              testing::AllOf(testing::StartsWith("POST /post.php HTTP/1.0\r\n"),
                             HasSubstr("User-Agent: Vosmere\r\n"),
                             testing::EndsWith("\r\n\r\nname=Vosmere&type=test")));
}

}  // namespace vosmere::test::http_session
