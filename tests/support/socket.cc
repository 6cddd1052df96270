#include "tests/support/socket.h"

// Both systems have the same calls, and a few names of their own.
#if __has_include(<winsock2.h>)
#include <winsock2.h>
namespace {
[[maybe_unused]] const int started = [] {
  WSADATA data;
  return ::WSAStartup(MAKEWORD(2, 2), &data);
}();
using Length = int;
constexpr int kNoSignal = 0;
constexpr int kBoth = SD_BOTH;
SOCKET Native(std::intptr_t handle) {
  return static_cast<SOCKET>(handle);
}
void CloseNative(std::intptr_t handle) {
  ::closesocket(Native(handle));
}
}  // namespace
#else
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
namespace {
using Length = socklen_t;
constexpr int kNoSignal = MSG_NOSIGNAL;
constexpr int kBoth = SHUT_RDWR;
int Native(std::intptr_t handle) {
  return static_cast<int>(handle);
}
void CloseNative(std::intptr_t handle) {
  ::close(Native(handle));
}
}  // namespace
#endif

namespace vosmere::test {
namespace {

sockaddr_in Loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<unsigned short>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

std::intptr_t NewSocket() {
  return static_cast<std::intptr_t>(::socket(AF_INET, SOCK_STREAM, 0));
}

}  // namespace

Socket Socket::Bind() {
  Socket socket(NewSocket());
  const sockaddr_in address = Loopback(0);
  ::bind(Native(socket.handle_), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  return socket;
}

Socket Socket::Listen(int backlog) {
  Socket socket = Bind();
  ::listen(Native(socket.handle_), backlog);
  return socket;
}

Socket Socket::Connect(int port) {
  Socket socket(NewSocket());
  const sockaddr_in address = Loopback(port);
  const bool connected =
      ::connect(Native(socket.handle_), reinterpret_cast<const sockaddr*>(&address),
                sizeof address) == 0;
  return connected ? std::move(socket) : Socket();
}

int Socket::Port() const {
  sockaddr_in address = {};
  Length length = sizeof address;
  ::getsockname(Native(handle_), reinterpret_cast<sockaddr*>(&address), &length);
  return ntohs(address.sin_port);
}

Socket Socket::Accept() {
  return Socket(static_cast<std::intptr_t>(::accept(Native(handle_), nullptr, nullptr)));
}

std::size_t Socket::Receive(char* bytes, std::size_t capacity) {
  const auto got = ::recv(Native(handle_), bytes, static_cast<int>(capacity), 0);
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

bool Socket::Send(const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const auto sent = ::send(Native(handle_), bytes.data() + done,
                             static_cast<int>(bytes.size() - done), kNoSignal);
    if (sent <= 0) return false;
    done += static_cast<std::size_t>(sent);
  }
  return true;
}

void Socket::Shutdown() {
  if (IsOpen()) ::shutdown(Native(handle_), kBoth);
}

void Socket::Reset() {
  const linger atOnce = {1, 0};
  ::setsockopt(Native(handle_), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce),
               sizeof atOnce);
  Close();
}

void Socket::Close() {
  if (IsOpen()) CloseNative(std::exchange(handle_, kNone));
}

}  // namespace vosmere::test
