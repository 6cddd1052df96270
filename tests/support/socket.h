// TCP on the loopback interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace vosmere::test {

class Socket {
 public:
  Socket() = default;
  Socket(Socket&& other) noexcept : handle_(std::exchange(other.handle_, kNone)) {}
  Socket& operator=(Socket&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Socket() { Close(); }

  /// Binds a free port of 127.0.0.1. Connections to it are refused until the socket listens.
  static Socket Bind();
  static Socket Listen(int backlog = 16);
  static Socket Connect(int port);

  bool IsOpen() const { return handle_ != kNone; }
  int Port() const;
  std::intptr_t handle() const { return handle_; }
  Socket Accept();
  /// 0 when the peer has closed the connection.
  std::size_t Receive(char* bytes, std::size_t capacity);
  /// False when the peer has closed the connection.
  bool Send(const std::string& bytes);
  /// Ends both directions; a call that waits in another thread returns.
  void Shutdown();
  /// Closes so that the peer sees a broken connection.
  void Reset();
  void Close();

 private:
  static constexpr std::intptr_t kNone = -1;
  explicit Socket(std::intptr_t handle) : handle_(handle) {}

  std::intptr_t handle_ = kNone;
};

}  // namespace vosmere::test
