// One exchange by libcurl, led by the caller: libcurl asks for the body and hands out the reply
// when it likes; here both happen when Write and Read are called.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <new>

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
  bool MustResend() const { return rewound_ && wanted_; }

  // As the operations of platform/internal/http.h.
  http::Error Send(ULONG total);
  http::Error Write(const char* bytes, std::size_t size);
  http::Error End();
  http::Error Read(char* bytes, std::size_t capacity, std::size_t* got);

  /// Headers for what a redirect leads to; null keeps the request's own.
  void SetRedirectHeaders(curl_slist* forGet, curl_slist* forPost);

 private:
  using Clock = std::chrono::steady_clock;

  static std::size_t OnBodyWanted(char* buffer, std::size_t, std::size_t room, void* self);
  static int OnRewind(void* self, curl_off_t, int);
  static std::size_t OnHeader(char* line, std::size_t, std::size_t size, void* self);
  static std::size_t OnReply(char* bytes, std::size_t, std::size_t size, void* self);

  http::Error Start(ULONG total);
  bool Answered() const { return stashed_ > 0 || (finished_ && result_ == CURLE_OK); }
  /// Gives libcurl time until `enough()`, or the transfer is over. With `whileMoving` the time
  /// allowed begins anew with every byte.
  template <class Enough>
  http::Error Drive(Clock::time_point deadline, bool whileMoving, Enough enough);
  Clock::time_point Deadline() const { return Clock::now() + timeout_; }
  void NoteResult();
  curl_off_t Moved() const;
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
  bool redirected_ = false;
  bool headEnded_ = false;
  std::size_t headerBytes_ = 0;
  bool finished_ = false;
  CURLcode result_ = CURLE_OK;
  std::size_t stashAt_ = 0;
  std::size_t stashed_ = 0;  // end of what the reply has brought and nobody has read
  char stash_[CURL_MAX_WRITE_SIZE];
};

}  // namespace vosmere::posix
