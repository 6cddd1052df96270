// One exchange with a server by libcurl's multi interface.
#include "vosmere/platform/posix/http_transfer.h"

#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/internal/http_message.h"

namespace vosmere::posix {
namespace {

using std::chrono::milliseconds;

/// The size of the pieces of an upload. With fewer and larger pieces, the receiver can work while
/// the next one is copied.
constexpr long kUploadBuffer = 640L * 1024;
constexpr std::size_t kMostHeaderBytes = std::size_t{256} * 1024;  // headers may come without end
/// How often progress is checked: the socket does not report that its send buffer is draining.
constexpr milliseconds kLookAgain{500};

/// libcurl's error for a line without end, from version 8.6 on.
constexpr auto kTooLarge = static_cast<CURLcode>(100);

/// The status code of a reply's first line; 0 for any other line.
int StatusOf(std::string_view line) {
  int status = 0;
  const std::size_t blank = line.find(' ');
  if (line.substr(0, 5) == "HTTP/" && blank != line.npos)
    std::from_chars(line.data() + blank + 1, line.data() + line.size(), status);
  return status;
}

/// The value of a Content-Length header; nothing for any other line.
std::optional<std::string_view> LengthText(std::string_view line) {
  constexpr std::string_view kName = "Content-Length:";
  if (!curl().strnequal(line.data(), kName.data(), kName.size())) return std::nullopt;
  return line.substr(kName.size());
}

/// The error for a certificate that was refused.
http::Error CertificateFault(CURL* easy) {
  // Numbers of OpenSSL. If it gives none, libcurl itself found that the names differ.
  constexpr long kNotChecked = 1, kNotYetValid = 9, kExpired = 10;
  long fault = 0;
  curl().easy_getinfo(easy, CURLINFO_SSL_VERIFYRESULT, &fault);
  if (fault <= kNotChecked) return http::kCertificateNameInvalid;
  return fault == kNotYetValid || fault == kExpired ? http::kCertificateDateInvalid
                                                    : http::kCertificateUntrusted;
}

/// Whether the head of a request was sent.
bool HasAsked(CURL* easy) {
  long bytes = 0;
  curl().easy_getinfo(easy, CURLINFO_REQUEST_SIZE, &bytes);
  return bytes > 0;
}

bool IsSecure(CURL* easy) {
  char* scheme = nullptr;
  curl().easy_getinfo(easy, CURLINFO_SCHEME, &scheme);
  return scheme && std::string_view(scheme).size() == 5;
}

}  // namespace

HttpTransfer::HttpTransfer(const http::Timeouts& timeouts)
    : connectTimeout_(milliseconds(timeouts.connect)), timeout_(milliseconds(timeouts.transfer)) {
  multi_.reset(curl().multi_init());
  easy_.reset(curl().easy_init());
  if (!multi_ || !easy_) throw std::bad_alloc();
  sockets_.fill(CURL_SOCKET_BAD);
  Set(easy(), CURLOPT_NOSIGNAL, 1L);
  Set(easy(), CURLOPT_QUICK_EXIT, 1L);  // does not wait for a resolver that does not return
  Set(easy(), CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeouts.connect));
  Set(easy(), CURLOPT_UPLOAD_BUFFERSIZE, kUploadBuffer);
  Set(easy(), CURLOPT_POST, 1L);
  Set(easy(), CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  Set(easy(), CURLOPT_SOCKOPTFUNCTION, &OnOpen);
  Set(easy(), CURLOPT_SOCKOPTDATA, this);
  Set(easy(), CURLOPT_CLOSESOCKETFUNCTION, &OnClose);
  Set(easy(), CURLOPT_CLOSESOCKETDATA, this);
  Set(easy(), CURLOPT_PREREQFUNCTION, &OnRequest);
  Set(easy(), CURLOPT_PREREQDATA, this);
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
  if (added_) curl().multi_remove_handle(multi_.get(), easy());
  easy_.reset();
  multi_.reset();  // calls OnClose for its sockets, so this object must still exist
}

void HttpTransfer::SetRedirectHeaders(curl_slist* forGet, curl_slist* forPost) {
  forGet_ = forGet;
  forPost_ = forPost;
}

// Callbacks from libcurl.

/// Remembers the socket for Moved, because libcurl offers no way to get it during a transfer.
int HttpTransfer::OnOpen(void* self, curl_socket_t socket, curlsocktype) {
  auto& t = *static_cast<HttpTransfer*>(self);
  const auto free = std::find(t.sockets_.begin(), t.sockets_.end(), CURL_SOCKET_BAD);
  if (free != t.sockets_.end()) *free = socket;
  t.opened_ = true;
  return CURL_SOCKOPT_OK;
}

/// Before the socket is closed, reads a reply that libcurl has not looked at (TakeLateReply).
int HttpTransfer::OnClose(void* self, curl_socket_t socket) {
  auto& t = *static_cast<HttpTransfer*>(self);
  if (!t.finished_ && !t.replyBegun_) {
    const ssize_t got = recv(socket, t.stash_, sizeof t.stash_, MSG_DONTWAIT);
    t.late_ = got > 0 ? static_cast<std::size_t>(got) : 0;
  }
  std::replace(t.sockets_.begin(), t.sockets_.end(), socket, CURL_SOCKET_BAD);
  return close(socket);
}

/// Called before each request, after a connection was found: without a new socket it is a reused
/// one.
int HttpTransfer::OnRequest(void* self, char*, char*, int, int) {
  auto& t = *static_cast<HttpTransfer*>(self);
  t.reused_ = !std::exchange(t.opened_, false);
  t.replyBegun_ = t.inHead_ = false;
  return CURL_PREREQFUNC_OK;
}

/// Pauses the transfer when there is nothing to send; Write continues it.
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
  return static_cast<HttpTransfer*>(self)->TakeHeader({line, size}) ? size : 0;
}

bool HttpTransfer::TakeHeader(std::string_view line) {
  replyBegun_ = true;
  headerBytes_ += line.size();
  if (headerBytes_ > kMostHeaderBytes) return false;
  if (!inHead_) {
    if (const int status = StatusOf(line)) TakeStatus(status);
    return true;
  }
  inHead_ = line.size() > 2;  // an empty line ends the head
  const auto text = LengthText(line);
  if (!text) return true;
  std::uint64_t length;
  if (!http::ParseLength(*text, &length) || length_.value_or(length) != length) return false;
  length_ = length;
  return true;
}

void HttpTransfer::TakeStatus(int status) {
  status_ = status;
  inHead_ = true;
  length_.reset();
  const bool toGet = status >= 301 && status <= 303, toPost = status == 307 || status == 308;
  // libcurl would follow all other 3xx statuses too.
  curl().easy_setopt(easy(), CURLOPT_FOLLOWLOCATION, long{toGet || toPost});
  if (!toGet && !toPost) return;
  redirected_ = true;
  curl().easy_setopt(easy(), CURLOPT_HTTPHEADER, toGet || Redirected() ? forGet_ : forPost_);
}

/// Pauses the transfer until the last piece has been read; Refill continues it.
std::size_t HttpTransfer::OnReply(char* bytes, std::size_t, std::size_t size, void* self) {
  auto& t = *static_cast<HttpTransfer*>(self);
  if (t.stashed_ > 0) return CURL_WRITEFUNC_PAUSE;
  // Not expected: libcurl delivers at most CURL_MAX_WRITE_SIZE bytes at a time.
  if (size > sizeof t.stash_) return 0;
  std::memcpy(t.stash_, bytes, size);
  t.stashed_ = size;
  return size;
}

// Operations for the caller.

http::Error HttpTransfer::Send(ULONG total) {
  if (!MustResend()) return Start(total);
  if (total != total_) return http::kInvalidParameter;
  toWrite_ = total;
  rewound_ = false;  // libcurl has already started again and waits for the body
  return http::kNone;
}

http::Error HttpTransfer::Start(ULONG total) {
  if (std::exchange(added_, false)) curl().multi_remove_handle(multi_.get(), easy());
  // Before the state of the last exchange is cleared below.
  renewed_ = BrokeOnReuse();
  total_ = toWrite_ = total;
  wanted_ = rewound_ = unreadable_ = redirected_ = replyBegun_ = inHead_ = finished_ = false;
  bodyLeft_ = headerBytes_ = stashAt_ = stashed_ = late_ = 0;
  status_ = 0;
  curl().easy_setopt(easy(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(total));
  curl().easy_setopt(easy(), CURLOPT_FRESH_CONNECT, long{renewed_});
  curl().easy_setopt(easy(), CURLOPT_FORBID_REUSE, long{renewed_});
  if (curl().multi_add_handle(multi_.get(), easy()) != CURLM_OK) return http::kNotEnoughMemory;
  added_ = true;

  // libcurl asks for the body when it has connected and sent the head.
  const auto enough = [&] { return wanted_ || Answered() || total == 0; };
  if (const http::Error error = Drive(Deadline() + connectTimeout_, false, enough)) return error;
  return FailureSoFar();
}

http::Error HttpTransfer::Write(const char* bytes, std::size_t size) {
  if (size > toWrite_) return http::kInvalidParameter;
  toWrite_ -= size;
  if (finished_ || rewound_ || size == 0) return FailureSoFar();

  body_ = bytes;
  bodyLeft_ = size;
  if (std::exchange(wanted_, false)) curl().easy_pause(easy(), CURLPAUSE_CONT);
  const http::Error error = Drive(Deadline(), true, [&] { return bodyLeft_ == 0 || rewound_; });
  bodyLeft_ = 0;
  return error ? error : FailureSoFar();
}

http::Error HttpTransfer::End() {
  const auto enough = [&] { return stashed_ > 0 || MustResend(); };
  if (toWrite_ > 0 && !rewound_ && !finished_) return http::kInvalidParameter;
  if (const http::Error error = Drive(Deadline(), true, enough)) return error;
  if (MustResend() || BrokeOnReuse()) return http::kForceRetry;
  if (!Answered()) return Failure();
  return replyBegun_ && !inHead_ ? http::kNone : http::kInvalidReply;
}

bool HttpTransfer::Redirected() const {
  const char* method = nullptr;
  curl().easy_getinfo(easy(), CURLINFO_EFFECTIVE_METHOD, &method);
  return method && std::string_view(method) != "POST";
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
    // Bytes that arrived before a failure are delivered first; the next call reports the failure.
    if (*got == capacity || (finished_ && (*got > 0 || result_ == CURLE_OK))) return http::kNone;
    const http::Error error = Refill(deadline);
    if (error) return finished_ && *got > 0 ? http::kNone : error;
  }
}

http::Error HttpTransfer::HasEnded(bool* ended) {
  const http::Error error = Refill(Deadline());
  *ended = stashed_ == 0;
  return error;
}

http::Error HttpTransfer::Refill(Clock::time_point deadline) {
  if (stashed_ == 0 && !finished_) {
    curl().easy_pause(easy(), CURLPAUSE_CONT);
    if (const auto error = Drive(deadline, false, [&] { return stashed_ > 0; })) return error;
  }
  return Answered() ? http::kNone : Failure();
}

template <class Enough>
http::Error HttpTransfer::Drive(Clock::time_point deadline, bool whileMoving, Enough enough) {
  curl_off_t moved = whileMoving ? Moved() : 0;
  for (;;) {
    int running;
    if (curl().multi_perform(multi_.get(), &running) != CURLM_OK) return http::kInternal;
    NoteResult();
    if (finished_ || enough()) return http::kNone;
    const auto now = Clock::now();
    if (whileMoving) {
      const curl_off_t before = std::exchange(moved, Moved());
      if (moved != before) deadline = now + timeout_;
    }
    if (now >= deadline) return http::kTimedOut;
    const auto left = std::chrono::ceil<milliseconds>(deadline - now);
    curl().multi_poll(multi_.get(), nullptr, 0,
                      static_cast<int>(std::min(left, kLookAgain).count()), nullptr);
  }
}

void HttpTransfer::NoteResult() {
  int left;
  while (const CURLMsg* const message = curl().multi_info_read(multi_.get(), &left)) {
    finished_ = true;
    result_ = message->data.result;
    if (result_ == CURLE_SEND_ERROR && !replyBegun_) TakeLateReply();
  }
}

void HttpTransfer::TakeLateReply() {
  const std::string_view bytes(stash_, late_);
  if (StatusOf(bytes) == 0) return;
  std::size_t at = 0;
  do {
    const std::size_t end = bytes.find('\n', at);
    if (end == bytes.npos || !TakeHeader(bytes.substr(at, end + 1 - at))) return;
    at = end + 1;
  } while (inHead_);
  const std::size_t length = std::min<std::uint64_t>(length_.value_or(late_), late_ - at);
  result_ = length < length_.value_or(length) ? CURLE_PARTIAL_FILE : CURLE_OK;
  stashAt_ = at;
  stashed_ = at + length;
}

/// The number of bytes of the body that have left this machine: those that libcurl has sent,
/// without those in the send buffers of the sockets.
curl_off_t HttpTransfer::Moved() const {
  curl_off_t moved = 0;
  curl().easy_getinfo(easy(), CURLINFO_SIZE_UPLOAD_T, &moved);
  for (const curl_socket_t socket : sockets_) {
    int queued = 0;
    if (socket != CURL_SOCKET_BAD && ioctl(socket, SIOCOUTQ, &queued) == 0) moved -= queued;
  }
  return moved;
}

bool HttpTransfer::BrokeOnReuse() const {
  const bool broke =
      result_ == CURLE_SEND_ERROR || result_ == CURLE_RECV_ERROR || result_ == CURLE_GOT_NOTHING;
  return finished_ && broke && reused_ && !replyBegun_ && !renewed_ && !Redirected();
}

http::Error HttpTransfer::FailureSoFar() const {
  return finished_ && !Answered() && !BrokeOnReuse() ? Failure() : http::kNone;
}

http::Error HttpTransfer::Failure() const {
  if (result_ == kTooLarge) return http::kInvalidReply;
  switch (result_) {
    // Before version 8.6 this is also libcurl's error for a line without end.
    case CURLE_OUT_OF_MEMORY:
      return HasAsked(easy()) ? http::kInvalidReply : http::kNotEnoughMemory;
    case CURLE_URL_MALFORMAT: return http::kInvalidUrl;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY: return http::kNameNotResolved;
    case CURLE_COULDNT_CONNECT:
    case CURLE_PROXY: return http::kCannotConnect;
    case CURLE_OPERATION_TIMEDOUT: return http::kTimedOut;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE: return http::kConnectionAborted;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_WRITE_ERROR: return http::kInvalidReply;  // a head that was refused
    case CURLE_TOO_MANY_REDIRECTS: return http::kRedirectFailed;
    case CURLE_SSL_CONNECT_ERROR: return http::kSecureChannelFailed;
    case CURLE_SSL_CACERT_BADFILE: return http::kCertificateUntrusted;
    case CURLE_PEER_FAILED_VERIFICATION: return CertificateFault(easy());
    case CURLE_ABORTED_BY_CALLBACK: return unreadable_ ? http::kFileInvalid : http::kInternal;
    case CURLE_UNSUPPORTED_PROTOCOL:
      if (!redirected_) return http::kInvalidReply;  // the reply does not begin as HTTP does
      return IsSecure(easy()) ? http::kHttpsToHttpOnRedirect : http::kRedirectFailed;
    default: return http::kInternal;
  }
}

}  // namespace vosmere::posix
