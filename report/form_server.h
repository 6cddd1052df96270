// A server for forms in a process of its own, on Linux.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace vosmere::report {

/// A server in a process of its own, which answers each form with one reply.
class FormServer {
 public:
  FormServer() {
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        listen(listener, 16) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
      std::abort();
    host_ = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    child_ = fork();
    if (child_ == 0) Serve(listener);
    close(listener);
  }
  FormServer(const FormServer&) = delete;
  FormServer& operator=(const FormServer&) = delete;
  ~FormServer() {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  const std::string& host() const { return host_; }

 private:
  [[noreturn]] static void Serve(int listener) {
    alarm(300);
    // Who reads what the parent has to tell waits for all who could write.
    for (int file = 0; file < 256; ++file)
      if (file != listener) close(file);
    for (;;) {
      const int peer = accept(listener, nullptr, nullptr);
      // The form ends with its boundary and two more hyphens.
      std::string got;
      char piece[4096];
      for (ssize_t count;
           !got.ends_with("--\r\n") && (count = read(peer, piece, sizeof piece)) > 0;)
        got.append(piece, static_cast<std::size_t>(count));
      static const char kReply[] = "HTTP/1.0 200 OK\r\nContent-Length: 5\r\n\r\nhello";
      if (write(peer, kReply, sizeof kReply - 1) < 0) _exit(1);
      close(peer);
    }
  }
  std::string host_;
  pid_t child_;
};

}  // namespace vosmere::report
