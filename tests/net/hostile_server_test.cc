// Servers that refuse, stall, break off and lie: every upload ends, soon, and says how.

#include <chrono>
#include <future>
#include <thread>

#include "tests/support/loopback_server.h"
#include "tests/support/platform.h"
#include "tests/support/sender.h"
#include "tests/support/test.h"

namespace vosmere::test::hostile_server {

constexpr LONG kShortly = 300;  // milliseconds

const auto kTimedOut = Code(12002);
const auto kInvalidReply = Code(12152);
/// Which of these depends on who notices what first.
const auto kBroken = AnyOf(Code(12029), Code(12030), Code(12031), kInvalidReply);

/// A byte from time to time until the client has enough of it.
void Trickle(Peer& peer) {
  while (peer.Send("x")) std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

TEST(HostileServer, Refuses) {
  const int port = Socket::Listen().Port();  // and closes again
  Sender sender("127.0.0.1:" + std::to_string(port));
  EXPECT_EQ(sender.Send(), Code(12029));
  EXPECT_EQ(sender.Message(), "HttpSendRequestEx Failed");
}

TEST(HostileServer, HasNoAddress) {
  Sender sender(std::string(64, 'x') + ".invalid");
  EXPECT_EQ(sender.Send(), Code(12007));
}

TEST(HostileServer, NeverAccepts) {
  if (RunsOnWine()) GTEST_SKIP() << "waits for as long as the kernel does";
  const Socket listener = Socket::Listen(0, 1);
  std::vector<Socket> others;
  for (int i = 0; i < 2; ++i) others.push_back(Socket::Connect(listener.Port()));
  Sender sender("127.0.0.1:" + std::to_string(listener.Port()));
  sender.upload.SetTimeouts(kShortly, kShortly);
  EXPECT_EQ(sender.Send(), kTimedOut);
}

TEST(HostileServer, NeverAnswers) {
  LoopbackServer server({[](Peer& peer) { peer.WaitForClient(); }});
  Sender sender(server.host());
  sender.upload.SetTimeouts(kShortly, kShortly);
  EXPECT_EQ(sender.Send(), kTimedOut);
  EXPECT_EQ(sender.Message(), "HttpEndRequest Failed");
}

TEST(HostileServer, NeverReads) {
  std::promise<void> over;
  LoopbackServer server({[&](Peer&) { over.get_future().wait(); }});
  Sender sender(server.host(), std::size_t{16 << 20});
  sender.upload.SetTimeouts(kShortly, kShortly);
  EXPECT_EQ(sender.Send(), kTimedOut);
  over.set_value();
}

TEST(HostileServer, ReadsSlowlyButSteadily) {
  LoopbackServer server({[](Peer& peer) {
    for (std::size_t bytes = 20000; bytes <= 1000000; bytes += 20000) {
      peer.ReadBytes(bytes);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    Reply("HTTP/1.0 200 OK\r\n\r\nok")(peer);
  }});
  Sender sender(server.host(), std::size_t{8 << 20});
  sender.upload.SetTimeouts(kShortly, kShortly);
  EXPECT_EQ(sender.Send(), 0);
}

TEST(HostileServer, SendsTheReplyByteByByte) {
  LoopbackServer server({[](Peer& peer) {
    peer.ReadRequest();
    peer.Send("HTTP/1.0 200 OK\r\n\r\n");
    Trickle(peer);
  }});
  Sender sender(server.host());
  sender.upload.SetTimeouts(kShortly, kShortly);
  EXPECT_EQ(sender.Send(), 1);
}

TEST(HostileServer, SendsTheHeadByteByByte) {
  if (RunsOnWine()) GTEST_SKIP() << "waits for as long as bytes come";
  LoopbackServer server({[](Peer& peer) {
    peer.ReadRequest();
    peer.Send("HTTP/1.0 200 OK\r\nX: ");
    Trickle(peer);
  }});
  Sender sender(server.host());
  sender.upload.SetTimeouts(kShortly, kShortly);
  EXPECT_EQ(sender.Send(), kTimedOut);
}

TEST(HostileServer, SendsAHeadWithoutEnd) {
  if (RunsOnWine()) GTEST_SKIP() << "takes a head of any length";
  for (const char* lineEnd : {": y\r\n", ""}) {
    LoopbackServer server({[&](Peer& peer) {
      peer.ReadRequest();
      peer.Send("HTTP/1.0 200 OK\r\n");
      for (int i = 0; i < 400 && peer.Send(std::string(1000, 'x') + lineEnd); ++i) {
      }
    }});
    Sender sender(server.host());
    EXPECT_EQ(sender.Send(), kInvalidReply) << lineEnd;
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
      } else if (bytes == 0 || !RunsOnWine()) {  // which takes what came for a whole head
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
    peer.ReadBytes(640 * 1024);  // the client has sent a piece then, and goes for the next
    peer.Send("HTTP/1.0 413 Too Large\r\nContent-Length: 3\r\n\r\nbig");
  }});
  Sender sender(server.host(), std::size_t{2 << 20});
  for (int i = 0; i < 50; ++i) {
    ASSERT_EQ(sender.Send(), 0);
    ASSERT_EQ(sender.upload.GetStatus(), 413);
    ASSERT_EQ(sender.Response(), "big");
  }
}

TEST(HostileServer, LiesAboutTheLength) {
  const struct {
    const char* reply;
    LONG code;
    const char* response;
  } cases[] = {
      {"Content-Length: 9\r\n\r\nhello", 1, "hello"},
      {"Content-Length: 3\r\n\r\nhello", 0, "hel"},
      {"Content-Length: -5\r\n\r\nhello", kInvalidReply, "(null)"},
      {"Content-Length: many\r\n\r\nhello", kInvalidReply, "(null)"},
      {"Content-Length: 18446744073709551621\r\n\r\nhello", kInvalidReply, "(null)"},
      {"Content-Length: 5\r\nContent-Length: 3\r\n\r\nhello", kInvalidReply, "(null)"},
      {"Content-Length: 5\r\nContent-Length: 5 \r\n\r\nhello", 0, "hello"},
      {"Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\nX: y\r\n\r\n", 0, "hello"},
      {"\r\nhello", 0, "hello"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reply);
    LoopbackServer server({Reply(std::string("HTTP/1.0 200 OK\r\n") + c.reply)});
    Sender sender(server.host());
    EXPECT_EQ(sender.Send(), c.code);
    EXPECT_EQ(sender.Response(), c.response);
  }
}

TEST(HostileServer, SpeaksSomethingElse) {
  if (RunsOnWine()) GTEST_SKIP() << "takes it for the oldest HTTP";
  LoopbackServer server({Reply("220 mail.example ESMTP\r\n\r\n")});
  EXPECT_EQ(Sender(server.host()).Send(), kInvalidReply);
}

}  // namespace vosmere::test::hostile_server
