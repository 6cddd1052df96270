#include "vosmere/platform/posix/http_transfer.h"

#include <linux/sockios.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "vosmere/platform/internal/file.h"

namespace vosmere::posix {
namespace {

using std::chrono::milliseconds;

/// As much as a piece of an upload has: fewer and larger pieces let the receiver work while the
/// next one is copied.
constexpr long kUploadBuffer = 640L * 1024;
constexpr std::size_t kMostHeaderBytes = std::size_t{256} * 1024;
/// The socket tells nobody that its own buffer drains, so it is asked that often.
constexpr milliseconds kLookAgain{500};

/// The status code of a reply's first line; 0 for any other line.
int StatusOf(std::string_view line) {
  int status = 0;
  const std::size_t blank = line.find(' ');
  if (line.substr(0, 5) == "HTTP/" && blank != line.npos)
    std::from_chars(line.data() + blank + 1, line.data() + line.size(), status);
  return status;
}

http::Error CertificateFault(CURL* easy) {
  // As OpenSSL numbers them; without any of its own numbers it was libcurl that compared names.
  constexpr long kNotChecked = 1, kNotYetValid = 9, kExpired = 10;
  long fault = 0;
  curl_easy_getinfo(easy, CURLINFO_SSL_VERIFYRESULT, &fault);
  if (fault <= kNotChecked) return http::kCertificateNameInvalid;
  return fault == kNotYetValid || fault == kExpired ? http::kCertificateDateInvalid
                                                    : http::kCertificateUntrusted;
}

bool IsSecure(CURL* easy) {
  char* scheme = nullptr;
  curl_easy_getinfo(easy, CURLINFO_SCHEME, &scheme);
  return scheme && std::string_view(scheme).size() == 5;
}

}  // namespace

HttpTransfer::HttpTransfer(const http::Timeouts& timeouts)
    : connectTimeout_(milliseconds(timeouts.connect)), timeout_(milliseconds(timeouts.transfer)) {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (ready == CURLE_OK) {
    multi_.reset(curl_multi_init());
    easy_.reset(curl_easy_init());
  }
  if (!multi_ || !easy_) throw std::bad_alloc();
  Set(easy(), CURLOPT_NOSIGNAL, 1L);
  Set(easy(), CURLOPT_QUICK_EXIT, 1L);  // leaves a resolver behind that does not return
  Set(easy(), CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeouts.connect));
  Set(easy(), CURLOPT_UPLOAD_BUFFERSIZE, kUploadBuffer);
  Set(easy(), CURLOPT_POST, 1L);
  Set(easy(), CURLOPT_READFUNCTION, &OnBodyWanted);
  Set(easy(), CURLOPT_READDATA, this);
  Set(easy(), CURLOPT_SEEKFUNCTION, &OnRewind);
  Set(easy(), CURLOPT_SEEKDATA, this);
  Set(easy(), CURLOPT_HEADERFUNCTION, &OnHeader);
  Set(easy(), CURLOPT_HEADERDATA, this);
  Set(easy(), CURLOPT_WRITEFUNCTION, &OnReply);
  Set(easy(), CURLOPT_WRITEDATA, this);
}

HttpTransfer::~HttpTransfer() {
  if (added_) curl_multi_remove_handle(multi_.get(), easy());
}

void HttpTransfer::SetRedirectHeaders(curl_slist* forGet, curl_slist* forPost) {
  forGet_ = forGet;
  forPost_ = forPost;
}

// What libcurl asks for and hands out.

std::size_t HttpTransfer::OnBodyWanted(char* buffer, std::size_t, std::size_t room, void* self) {
  auto& t = *static_cast<HttpTransfer*>(self);
  const std::size_t size = std::min(room, t.bodyLeft_);
  if (size == 0) {
    t.wanted_ = true;
    return CURL_READFUNC_PAUSE;
  }
  if (!CopyUnlessGone(buffer, t.body_, size)) {
    t.unreadable_ = true;
    return CURL_READFUNC_ABORT;
  }
  t.body_ += size;
  t.bodyLeft_ -= size;
  return size;
}

int HttpTransfer::OnRewind(void* self, curl_off_t, int) {
  auto& t = *static_cast<HttpTransfer*>(self);
  t.rewound_ = true;
  t.wanted_ = false;
  t.bodyLeft_ = 0;
  return CURL_SEEKFUNC_OK;
}

std::size_t HttpTransfer::OnHeader(char* line, std::size_t, std::size_t size, void* self) {
  auto& t = *static_cast<HttpTransfer*>(self);
  if (const int status = StatusOf({line, size})) {
    const bool toGet = status >= 301 && status <= 303, toPost = status == 307 || status == 308;
    // libcurl would follow all others of this class, too.
    curl_easy_setopt(t.easy(), CURLOPT_FOLLOWLOCATION, long{toGet || toPost});
    if (toGet || toPost) {
      t.redirected_ = true;
      curl_easy_setopt(t.easy(), CURLOPT_HTTPHEADER, toGet ? t.forGet_ : t.forPost_);
    }
  }
  t.headEnded_ = size <= 2;
  t.headerBytes_ += size;
  return t.headerBytes_ <= kMostHeaderBytes ? size : 0;
}

std::size_t HttpTransfer::OnReply(char* bytes, std::size_t, std::size_t size, void* self) {
  auto& t = *static_cast<HttpTransfer*>(self);
  if (t.stashed_ > 0) return CURL_WRITEFUNC_PAUSE;
  if (size > sizeof t.stash_) return 0;
  std::memcpy(t.stash_, bytes, size);
  t.stashed_ = size;
  return size;
}

// What the caller does.

http::Error HttpTransfer::Send(ULONG total) {
  if (!MustResend()) return Start(total);
  if (total != total_) return http::kInvalidParameter;
  toWrite_ = total;
  rewound_ = false;  // libcurl has begun anew by itself and waits for the body
  return http::kNone;
}

http::Error HttpTransfer::Start(ULONG total) {
  if (std::exchange(added_, false)) curl_multi_remove_handle(multi_.get(), easy());
  total_ = toWrite_ = total;
  wanted_ = rewound_ = unreadable_ = redirected_ = headEnded_ = finished_ = false;
  bodyLeft_ = headerBytes_ = stashAt_ = stashed_ = 0;
  curl_easy_setopt(easy(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(total));
  if (curl_multi_add_handle(multi_.get(), easy()) != CURLM_OK) return http::kNotEnoughMemory;
  added_ = true;

  const auto enough = [&] { return wanted_ || Answered() || total == 0; };
  if (const http::Error error = Drive(Deadline() + connectTimeout_, false, enough)) return error;
  return finished_ && !Answered() ? Failure() : http::kNone;
}

http::Error HttpTransfer::Write(const char* bytes, std::size_t size) {
  if (size > toWrite_) return http::kInvalidParameter;
  toWrite_ -= size;
  if (finished_) return Answered() ? http::kNone : Failure();
  if (rewound_ || size == 0) return http::kNone;

  body_ = bytes;
  bodyLeft_ = size;
  if (std::exchange(wanted_, false)) curl_easy_pause(easy(), CURLPAUSE_CONT);
  const http::Error error = Drive(Deadline(), true, [&] { return bodyLeft_ == 0 || rewound_; });
  bodyLeft_ = 0;
  if (error) return error;
  return finished_ && !Answered() ? Failure() : http::kNone;
}

http::Error HttpTransfer::End() {
  const auto enough = [&] { return stashed_ > 0 || MustResend(); };
  if (toWrite_ > 0 && !rewound_ && !finished_) return http::kInvalidParameter;
  if (const http::Error error = Drive(Deadline(), true, enough)) return error;
  if (MustResend()) return http::kForceRetry;
  if (!Answered()) return Failure();
  return headEnded_ ? http::kNone : http::kInvalidReply;
}

http::Error HttpTransfer::Read(char* bytes, std::size_t capacity, std::size_t* got) {
  const auto deadline = Deadline();
  *got = 0;
  for (;;) {
    const std::size_t size = std::min(capacity - *got, stashed_ - stashAt_);
    std::memcpy(bytes + *got, stash_ + stashAt_, size);
    *got += size;
    stashAt_ += size;
    if (stashAt_ == stashed_) stashAt_ = stashed_ = 0;
    if (*got == capacity) return http::kNone;
    if (finished_) return *got || result_ == CURLE_OK ? http::kNone : Failure();
    curl_easy_pause(easy(), CURLPAUSE_CONT);
    if (const auto error = Drive(deadline, false, [&] { return stashed_ > 0; })) return error;
  }
}

template <class Enough>
http::Error HttpTransfer::Drive(Clock::time_point deadline, bool whileMoving, Enough enough) {
  curl_off_t moved = whileMoving ? Moved() : 0;
  for (;;) {
    int running;
    if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) return http::kInternal;
    NoteResult();
    if (finished_ || enough()) return http::kNone;
    const auto now = Clock::now();
    if (whileMoving) {
      const curl_off_t before = std::exchange(moved, Moved());
      if (moved != before) deadline = now + timeout_;
    }
    if (now >= deadline) return http::kTimedOut;
    const auto left = std::chrono::ceil<milliseconds>(deadline - now);
    curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(std::min(left, kLookAgain).count()),
                    nullptr);
  }
}

void HttpTransfer::NoteResult() {
  int left;
  while (const CURLMsg* const message = curl_multi_info_read(multi_.get(), &left)) {
    finished_ = true;
    result_ = message->data.result;
  }
}

/// Bytes of the body that have left this machine.
curl_off_t HttpTransfer::Moved() const {
  curl_off_t uploaded = 0;
  curl_socket_t socket = CURL_SOCKET_BAD;
  int queued = 0;
  curl_easy_getinfo(easy(), CURLINFO_SIZE_UPLOAD_T, &uploaded);
  curl_easy_getinfo(easy(), CURLINFO_ACTIVESOCKET, &socket);
  if (socket != CURL_SOCKET_BAD) ioctl(socket, SIOCOUTQ, &queued);
  return uploaded - queued;
}

http::Error HttpTransfer::Failure() const {
  switch (result_) {
    case CURLE_OUT_OF_MEMORY: return http::kNotEnoughMemory;
    case CURLE_URL_MALFORMAT: return http::kInvalidUrl;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY: return http::kNameNotResolved;
    case CURLE_COULDNT_CONNECT:
    case CURLE_PROXY: return http::kCannotConnect;
    case CURLE_OPERATION_TIMEDOUT: return http::kTimedOut;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE: return http::kConnectionAborted;
    case CURLE_GOT_NOTHING:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_WRITE_ERROR: return http::kInvalidReply;  // a head without end
    case CURLE_TOO_MANY_REDIRECTS: return http::kRedirectFailed;
    case CURLE_SSL_CONNECT_ERROR: return http::kSecureChannelFailed;
    case CURLE_SSL_CACERT_BADFILE: return http::kCertificateUntrusted;
    case CURLE_PEER_FAILED_VERIFICATION: return CertificateFault(easy());
    case CURLE_ABORTED_BY_CALLBACK: return unreadable_ ? http::kFileInvalid : http::kInternal;
    case CURLE_UNSUPPORTED_PROTOCOL:
      if (!redirected_) return http::kInvalidReply;  // one that does not begin as HTTP does
      return IsSecure(easy()) ? http::kHttpsToHttpOnRedirect : http::kRedirectFailed;
    default: return http::kInternal;
  }
}

}  // namespace vosmere::posix
