// One exchange by libcurl, led by the caller: libcurl asks for the body and hands out the reply
// when it likes; here both happen when Write and Read are called.
#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string_view>

#include "vosmere/platform/internal/http.h"

namespace vosmere::posix {

/// Throws std::bad_alloc. (libcurl's own name is a macro that wants its option as a literal.)
template <class Value>
void Set(CURL* easy, CURLoption option, Value value) {
  if ((curl_easy_setopt)(easy, option, value) == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
}

class HttpTransfer {
 public:
  /// Throws std::bad_alloc.
  explicit HttpTransfer(const http::Timeouts& timeouts);
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;
  ~HttpTransfer();

  /// For the request's own options.
  CURL* easy() const { return easy_.get(); }

  /// Whether libcurl has begun the request anew and waits for its body.
  bool MustResend() const { return rewound_ && wanted_ && !finished_; }

  // As the operations of platform/internal/http.h.
  http::Error Send(ULONG total);
  http::Error Write(const char* bytes, std::size_t size);
  http::Error End();
  int Status() const { return status_; }
  bool Redirected() const;
  http::Error Read(char* bytes, std::size_t capacity, std::size_t* got);
  http::Error HasEnded(bool* ended);

  /// Headers for what a redirect leads to; null keeps the request's own.
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
  /// One line of a head or of what may follow the body. False for one that is refused.
  bool TakeHeader(std::string_view line);
  void TakeStatus(int status);
  bool Answered() const { return stashed_ > 0 || (finished_ && result_ == CURLE_OK); }
  /// Gives libcurl time until `enough()`, or the transfer is over. With `whileMoving` the time
  /// allowed begins anew with every byte.
  template <class Enough>
  http::Error Drive(Clock::time_point deadline, bool whileMoving, Enough enough);
  Clock::time_point Deadline() const { return Clock::now() + timeout_; }
  /// Waits for more of the reply, or for its end.
  http::Error Refill(Clock::time_point deadline);
  void NoteResult();
  /// A server that answers before it has read all and goes makes sending fail, at once where
  /// libcurl has not looked at the reply yet.
  void TakeLateReply();
  curl_off_t Moved() const;
  /// Whether a connection that had served before broke before the reply began. The server may have
  /// ended it before it saw the request, so that goes out once more, on a new one.
  bool BrokeOnReuse() const;
  /// kNone as long as there may be a reply.
  http::Error FailureSoFar() const;
  http::Error Failure() const;

  struct MultiCleanup {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };
  struct EasyCleanup {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };

  std::unique_ptr<CURLM, MultiCleanup> multi_;
  std::unique_ptr<CURL, EasyCleanup> easy_;
  Clock::duration connectTimeout_;
  Clock::duration timeout_;
  std::array<curl_socket_t, 8> sockets_;  // that are open
  curl_slist* forGet_ = nullptr;
  curl_slist* forPost_ = nullptr;
  bool added_ = false;

  // Of the exchange under way.
  const char* body_ = nullptr;  // what Write was given and libcurl has not taken yet
  std::size_t bodyLeft_ = 0;
  ULONG total_ = 0;
  std::size_t toWrite_ = 0;  // what was announced and not written yet
  bool wanted_ = false;      // libcurl waits for more of the body
  bool rewound_ = false;     // and from the start
  bool unreadable_ = false;  // the memory of the body is gone
  bool opened_ = false;      // a socket, since the last request
  bool reused_ = false;      // the connection, by this request
  bool renewed_ = false;     // the exchange, on new connections
  bool redirected_ = false;
  int status_ = 0;           // of the last reply
  bool replyBegun_ = false;  // to the last request
  bool inHead_ = false;
  std::optional<std::uint64_t> length_;  // that the head names
  std::size_t headerBytes_ = 0;
  bool finished_ = false;
  CURLcode result_ = CURLE_OK;
  std::size_t stashAt_ = 0;
  std::size_t stashed_ = 0;  // end of what the reply has brought and nobody has read
  std::size_t late_ = 0;     // what a connection had brought when it was closed
  char stash_[CURL_MAX_WRITE_SIZE];
};

}  // namespace vosmere::posix
