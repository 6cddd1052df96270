// Adapts libcurl to the caller's pace. libcurl asks for the body and delivers the reply through
// callbacks; here both happen during calls of Write and Read.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string_view>

#include "vosmere/platform/internal/http.h"
#include "vosmere/platform/posix/libcurl.h"

namespace vosmere::posix {

/// Sets an option. Throws std::bad_alloc.
template <class Value>
void Set(CURL* easy, CURLoption option, Value value) {
  if (curl().easy_setopt(easy, option, value) == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
}

/// One exchange with a server, which may be repeated. Not thread-safe.
class HttpTransfer {
 public:
  /// libcurl must be loaded. Throws std::bad_alloc.
  explicit HttpTransfer(const http::Timeouts& timeouts);
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;
  ~HttpTransfer();

  /// The libcurl handle, for setting options of the request.
  CURL* easy() const { return easy_.get(); }

  /// Whether libcurl has started the request again and waits for its body.
  bool MustResend() const { return rewound_ && wanted_ && !finished_; }

  // The operations of platform/internal/http.h with these names.
  http::Error Send(ULONG total);
  http::Error Write(const char* bytes, std::size_t size);
  http::Error End();
  int Status() const { return status_; }
  bool Redirected() const;
  http::Error Read(char* bytes, std::size_t capacity, std::size_t* got);
  http::Error HasEnded(bool* ended);

  /// Sets the headers for the requests after a redirect. The caller owns the lists and keeps them
  /// during the exchange.
  void SetRedirectHeaders(curl_slist* forGet, curl_slist* forPost);

 private:
  using Clock = std::chrono::steady_clock;

  static int OnOpen(void* self, curl_socket_t socket, curlsocktype);
  static int OnClose(void* self, curl_socket_t socket);
  static int OnRequest(void* self, char*, char*, int, int);
  static std::size_t OnBodyWanted(char* buffer, std::size_t, std::size_t room, void* self);
  static int OnRewind(void* self, curl_off_t, int);
  static std::size_t OnHeader(char* line, std::size_t, std::size_t size, void* self);
  static std::size_t OnReply(char* bytes, std::size_t, std::size_t size, void* self);

  http::Error Start(ULONG total);
  /// Handles one header line, or one of the trailer after the body. False for a line that is
  /// refused.
  bool TakeHeader(std::string_view line);
  /// Begins a new head: a redirect, or the reply.
  void TakeStatus(int status);
  /// Whether there is a reply that can be read.
  bool Answered() const { return stashed_ > 0 || (finished_ && result_ == CURLE_OK); }
  /// Lets libcurl work until `enough()` is true or the transfer is over. With `whileMoving` the
  /// deadline is extended whenever a byte of the body is sent.
  template <class Enough>
  http::Error Drive(Clock::time_point deadline, bool whileMoving, Enough enough);
  Clock::time_point Deadline() const { return Clock::now() + timeout_; }
  /// Waits for more of the reply or for its end.
  http::Error Refill(Clock::time_point deadline);
  /// Takes over the result if the transfer is over.
  void NoteResult();
  /// A server may reply and close the connection before it has read everything. Sending then fails,
  /// possibly before libcurl has looked at the reply, which is read here.
  void TakeLateReply();
  curl_off_t Moved() const;
  /// Whether a reused connection broke before the reply began. The server may have closed it before
  /// it received the request, so the request is repeated on a new one.
  bool BrokeOnReuse() const;
  /// The error of the transfer; kNone as long as a reply is possible.
  http::Error FailureSoFar() const;
  /// The error for libcurl's result.
  http::Error Failure() const;

  struct MultiCleanup {
    void operator()(CURLM* multi) const { curl().multi_cleanup(multi); }
  };
  struct EasyCleanup {
    void operator()(CURL* easy) const { curl().easy_cleanup(easy); }
  };

  std::unique_ptr<CURLM, MultiCleanup> multi_;
  std::unique_ptr<CURL, EasyCleanup> easy_;
  Clock::duration connectTimeout_;
  Clock::duration timeout_;
  std::array<curl_socket_t, 8> sockets_;  // the open ones
  curl_slist* forGet_ = nullptr;
  curl_slist* forPost_ = nullptr;
  bool added_ = false;

  // The state of the current exchange.
  const char* body_ = nullptr;  // the bytes from Write that libcurl has not taken yet
  std::size_t bodyLeft_ = 0;
  ULONG total_ = 0;
  std::size_t toWrite_ = 0;  // bytes that were announced and not yet written
  bool wanted_ = false;      // libcurl waits for more of the body
  bool rewound_ = false;     // libcurl starts the body again
  bool unreadable_ = false;  // the memory of the body no longer exists
  bool opened_ = false;      // whether a socket was opened since the last request
  bool reused_ = false;      // whether this request is on a connection that served another
  bool renewed_ = false;     // whether only new connections are allowed
  bool redirected_ = false;
  int status_ = 0;           // of the last reply
  bool replyBegun_ = false;  // for the last request
  bool inHead_ = false;
  std::optional<std::uint64_t> length_;  // the Content-Length
  std::size_t headerBytes_ = 0;
  bool finished_ = false;
  CURLcode result_ = CURLE_OK;
  std::size_t stashAt_ = 0;
  std::size_t stashed_ = 0;  // end of the unread part of the reply in stash_
  std::size_t late_ = 0;     // bytes of the reply found when the connection was closed
  char stash_[CURL_MAX_WRITE_SIZE];
};

}  // namespace vosmere::posix
