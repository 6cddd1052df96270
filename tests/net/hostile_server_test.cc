// Servers that refuse, stall, break off and lie: every upload ends soon, with the reason.

#include <chrono>
#include <future>
#include <thread>

#include "tests/support/loopback_server.h"
#include "tests/support/platform.h"
#include "tests/support/sender.h"
#include "tests/support/test.h"

namespace vosmere::test::hostile_server {

constexpr LONG kShortly = 300, kLong = 20000;  // milliseconds

const auto kTimedOut = Code(12002);
const auto kInvalidReply = Code(12152);
/// Any of these, depending on which side notices first.
const auto kBroken = AnyOf(Code(12029), Code(12030), Code(12031), kInvalidReply);

/// Sends a byte from time to time until the client gives up.
void Trickle(Peer& peer, const char* before) {
  peer.Send(before);
  while (peer.Send("x")) std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

/// The result of sending, which must not take long.
LONG SendSoon(Sender& sender, LONG connectLimit = kShortly, LONG limit = kShortly) {
  sender.upload.SetTimeouts(connectLimit, limit);
  const auto start = std::chrono::steady_clock::now();
  const LONG code = sender.Send();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(kLong / 4));
  return code;
}

TEST(HostileServer, CannotBeReached) {
  const Socket silent = Socket::Bind();  // nobody listens on it
  Sender refused("127.0.0.1:" + std::to_string(silent.Port()));
  EXPECT_EQ(refused.Send(), Code(12029));
  EXPECT_EQ(refused.Message(), "HttpSendRequestEx Failed");
  Sender unknown(std::string(64, 'x') + ".invalid");
  EXPECT_EQ(unknown.Send(), Code(12007));
}

TEST(HostileServer, NeverAccepts) {
  if (RunsOnWine()) GTEST_SKIP() << "waits for as long as the kernel does";
  const Socket listener = Socket::Listen(1);
  std::vector<Socket> others;
  for (int i = 0; i < 2; ++i) others.push_back(Socket::Connect(listener.Port()));
  Sender sender("127.0.0.1:" + std::to_string(listener.Port()));
  EXPECT_EQ(SendSoon(sender, kShortly, kLong), kTimedOut);
}

TEST(HostileServer, NeverReads) {
  std::promise<void> over;
  LoopbackServer server({[&](Peer&) { over.get_future().wait(); }});
  Sender sender(server.host(), std::size_t{16 << 20});
  EXPECT_EQ(SendSoon(sender, kLong), kTimedOut);
  over.set_value();
}

TEST(HostileServer, ReadsSlowlyButSteadily) {
  LoopbackServer server({[](Peer& peer) {
    for (std::size_t bytes = 40000; bytes <= 1000000; bytes += 40000) {
      peer.ReadBytes(bytes);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    Reply("HTTP/1.0 200 OK\r\n\r\nok")(peer);
  }});
  Sender sender(server.host(), std::size_t{8 << 20});
  EXPECT_EQ(SendSoon(sender), 0);
}

TEST(HostileServer, AnswersByBitsOrNotAtAll) {
  const auto headWithoutEnd = [](const char* lineEnd) {
    return [lineEnd](Peer& peer) {
      peer.Send("HTTP/1.0 200 OK\r\n");
      for (int i = 0; i < 400 && peer.Send(std::string(1000, 'x') + lineEnd); ++i) {
      }
    };
  };
  const struct {
    const char* what;
    LoopbackServer::Script answer;
    LONG code;
    const char* wines = nullptr;  ///< what Wine does instead
  } cases[] = {
      {"nothing", [](Peer& peer) { peer.WaitForClient(); }, kTimedOut},
      {"a body byte by byte", [](Peer& peer) { Trickle(peer, "HTTP/1.0 200 OK\r\n\r\n"); }, 1},
      {"a head byte by byte", [](Peer& peer) { Trickle(peer, "HTTP/1.0 200 OK\r\nX: "); },
       kTimedOut, "waits for as long as bytes come"},
      {"a head of many lines", headWithoutEnd(": y\r\n"), kInvalidReply,
       "takes a head of any length"},
      {"a head of one line", headWithoutEnd(""), kInvalidReply, "takes a head of any length"},
  };
  for (const auto& c : cases) {
    if (RunsOnWine() && c.wines) continue;
    LoopbackServer server({[&](Peer& peer) {
      peer.ReadRequest();
      c.answer(peer);
    }});
    Sender sender(server.host());
    EXPECT_EQ(SendSoon(sender, kLong, c.code == kInvalidReply ? 2000 : kShortly), c.code) << c.what;
    EXPECT_EQ(sender.Message(), c.code == 1 ? "(null)" : "HttpEndRequest Failed") << c.what;
  }
}

TEST(HostileServer, BreaksOffTheRequest) {
  for (const std::size_t bodySize : {4, 4 << 20})
    for (const std::size_t bytes : {0, 1, 100, 300}) {
      LoopbackServer server({[&](Peer& peer) {
        peer.ReadBytes(bytes);
        peer.Reset();
      }});
      Sender sender(server.host(), bodySize);
      EXPECT_THAT(sender.Send(), kBroken) << bytes << " of " << bodySize;
    }
}

TEST(HostileServer, BreaksOffTheReply) {
  const std::string reply = "HTTP/1.0 200 OK\r\nContent-Length: 10\r\n\r\n01234";
  constexpr std::size_t kHead = 39;
  for (const std::size_t bytes :
       {std::size_t{0}, std::size_t{10}, std::size_t{30}, kHead, kHead + 5})
    for (const bool resets : {false, true}) {
      SCOPED_TRACE(reply.substr(0, bytes) + (resets ? " reset" : " end"));
      LoopbackServer server({[&](Peer& peer) {
        peer.ReadRequest();
        peer.Send(reply.substr(0, bytes));
        if (resets) peer.Reset();
      }});
      Sender sender(server.host());
      const LONG code = sender.Send();
      if (bytes >= kHead) {
        EXPECT_THAT(code, AnyOf(1, kBroken));
      } else if (bytes == 0 || !RunsOnWine()) {  // Wine takes what has arrived for a complete head
        EXPECT_THAT(code, kBroken);
      }
    }
}

TEST(HostileServer, AnswersBeforeTheBodyIsRead) {
  LoopbackServer server({[](Peer& peer) {
    peer.ReadBytes(10);
    peer.Send("HTTP/1.0 413 Too Large\r\nContent-Length: 3\r\n\r\nbig");
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }});
  Sender sender(server.host(), std::size_t{16 << 20});
  EXPECT_EQ(sender.Send(), 0);
  EXPECT_EQ(sender.upload.GetStatus(), 413);
  EXPECT_EQ(sender.Response(), "big");
}

TEST(HostileServer, AnswersAndGoesBeforeTheBodyIsRead) {
  LoopbackServer server({[&](Peer& peer) {
    peer.ReadBytes(640 * 1024);  // the client has then sent one piece and begins the next
    peer.Send("HTTP/1.0 413 Too Large\r\nContent-Length: 3\r\n\r\nbig");
  }});
  Sender sender(server.host(), std::size_t{2 << 20});
  for (int i = 0; i < 50; ++i) {
    ASSERT_EQ(sender.Send(), 0);
    ASSERT_EQ(sender.upload.GetStatus(), 413);
    ASSERT_EQ(sender.Response(), "big");
  }
}

TEST(HostileServer, AnswersOddly) {
  const std::string ok = "HTTP/1.0 200 OK\r\n";
  const struct {
    std::string reply;
    LONG code;
    int status;
    const char* response;
  } cases[] = {
      {ok + "Content-Length: 9\r\n\r\nhello", 1, 200, "hello"},
      {ok + "Content-Length: 3\r\n\r\nhello", 0, 200, "hel"},
      {ok + "Content-Length: -5\r\n\r\nhello", kInvalidReply, 0, "(null)"},
      {ok + "Content-Length: many\r\n\r\nhello", kInvalidReply, 0, "(null)"},
      {ok + "Content-Length: 18446744073709551621\r\n\r\nhello", kInvalidReply, 0, "(null)"},
      {ok + "Content-Length: 5\r\nContent-Length: 3\r\n\r\nhello", kInvalidReply, 0, "(null)"},
      {ok + "Content-Length: 5\r\nContent-Length: 5 \r\n\r\nhello", 0, 200, "hello"},
      {ok + "Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\nX: y\r\n\r\n", 0, 200, "hello"},
      {ok + "\r\nhello", 0, 200, "hello"},
      {"HTTP/1.0 304 Same\r\nLocation: /other\r\n\r\n", 0, 304, "(null)"},
      {"220 mail.example ESMTP\r\n\r\n", kInvalidReply, 0, "(null)"},
  };
  for (const auto& c : cases) {
    if (RunsOnWine() && c.reply[0] == '2') continue;  // Wine takes it for HTTP/0.9
    SCOPED_TRACE(c.reply);
    LoopbackServer server({Reply(c.reply), ReplyOk()});
    Sender sender(server.host());
    EXPECT_EQ(sender.upload.UploadFile(W(sender.file())), c.code >= 0);
    EXPECT_EQ(sender.upload.GetErrorCode(), c.code);
    EXPECT_EQ(sender.Response(), c.response);
    EXPECT_FALSE(sender.upload.WasRedirected());
    if (c.code >= 0) {
      EXPECT_EQ(sender.upload.GetStatus(), c.status);
    }
    EXPECT_EQ(server.requests().size(), 1u);
  }
}

}  // namespace vosmere::test::hostile_server
