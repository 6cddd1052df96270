#include "tests/support/loopback_server.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace vosmere::test {

bool Peer::ReadMore() {
  char bytes[64 * 1024];
  const std::size_t got = socket_.Receive(bytes, sizeof bytes);
  received_.append(bytes, got);
  return got > 0;
}

bool Peer::ReadBytes(std::size_t count) {
  while (received_.size() < count)
    if (!ReadMore()) return false;
  return true;
}

bool Peer::ReadRequest() {
  std::size_t end;
  while ((end = received_.find("\r\n\r\n")) == received_.npos)
    if (!ReadMore()) return false;
  const std::size_t length = received_.find("Content-Length: ");
  return ReadBytes(end + 4 +
                   (length < end ? std::strtoul(&received_[length + 16], nullptr, 10) : 0));
}

void Peer::WaitForClient() {
  while (ReadMore()) {
  }
}

LoopbackServer::LoopbackServer(std::vector<Script> scripts)
    : scripts_(std::move(scripts)),
      listener_(Socket::Listen()),
      port_(listener_.Port()),
      thread_([this] { Serve(); }) {}

void LoopbackServer::Serve() {
  for (std::size_t i = 0;; ++i) {
    Socket accepted = listener_.Accept();
    {
      const std::lock_guard lock(mutex_);
      if (stopping_) return;
      current_ = std::move(accepted);
    }
    Peer peer(current_);
    scripts_[std::min(i, scripts_.size() - 1)](peer);
    requests_.push_back(peer.received());
    const std::lock_guard lock(mutex_);
    peer.resets() ? current_.Reset() : current_.Close();
  }
}

void LoopbackServer::Stop() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    current_.Shutdown();
  }
  Socket::Connect(port_);  // ends the wait for the next client
  thread_.join();
}

const std::vector<std::string>& LoopbackServer::requests() {
  Stop();
  return requests_;
}

LoopbackServer::Script Reply(const std::string& bytes) {
  return [bytes](Peer& peer) {
    peer.ReadRequest();
    peer.Send(bytes);
  };
}

LoopbackServer::Script ReplyOk(const std::string& body) {
  return Reply("HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
               body);
}

LoopbackServer::Script LongReply(std::size_t size) {
  return [size](Peer& peer) {
    Reply("HTTP/1.0 200 OK\r\n\r\n")(peer);
    std::string block;
    while (block.size() < 1 << 20) block += "😀";
    for (std::size_t left = size; left > 0; left -= block.size()) {
      block.resize(std::min(left, block.size()));
      if (!peer.Send(block)) return;
    }
  };
}

}  // namespace vosmere::test
