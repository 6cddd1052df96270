// An HTTP server in the test's own process, as hostile as the test wants it.
//
//   LoopbackServer server({Reply("HTTP/1.0 200 OK\r\n\r\nhello")});
//   upload.SetHost(W(server.host()));
//   EXPECT_EQ(upload.Post(), 0);
//   EXPECT_EQ(server.requests()[0], "POST / HTTP/1.0\r\n...");   // every byte that came
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/socket.h"

namespace vosmere::test {

/// One connection, from the server's side.
class Peer {
 public:
  explicit Peer(Socket& socket) : socket_(socket) {}

  /// Reads until that many bytes have arrived in all; false if the client closes before.
  bool ReadBytes(std::size_t count);
  /// Reads a head, and the body that it announces.
  bool ReadRequest();
  bool Send(const std::string& bytes) { return socket_.Send(bytes); }
  /// Breaks the connection instead of closing it when the script has ended.
  void Reset() { resets_ = true; }
  bool resets() const { return resets_; }
  /// Reads until the client closes the connection.
  void WaitForClient();

  const std::string& received() const { return received_; }

 private:
  bool ReadMore();

  Socket& socket_;
  std::string received_;
  bool resets_ = false;
};

class LoopbackServer {
 public:
  using Script = std::function<void(Peer&)>;

  /// Connections run through the scripts in turn, and the last script has all others.
  explicit LoopbackServer(std::vector<Script> scripts);
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;
  ~LoopbackServer() { Stop(); }

  int port() const { return port_; }
  std::string host() const { return "127.0.0.1:" + std::to_string(port_); }

  /// What came on each connection that was served before this call, which stops the server.
  const std::vector<std::string>& requests();

 private:
  void Serve();
  void Stop();

  std::vector<Script> scripts_;
  Socket listener_;
  int port_;
  std::mutex mutex_;  // protects the two below
  Socket current_;
  bool stopping_ = false;
  std::vector<std::string> requests_;
  std::thread thread_;
};

/// Reads a request and sends `bytes`.
LoopbackServer::Script Reply(const std::string& bytes);
/// Reads a request and sends a whole reply with this body.
LoopbackServer::Script ReplyOk(const std::string& body = "ok");

/// The same with that many bytes, four to a character, and without a length.
LoopbackServer::Script LongReply(std::size_t size);

}  // namespace vosmere::test
