// Sending requests through WinINet, following redirects and reading replies.
#include <algorithm>
#include <cstring>
#include <utility>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/platform/win32/http_request.h"

namespace vosmere::http {
namespace {

using win32::Place;
using win32::Watch;

constexpr int kMostRedirects = 10;

bool IsAborted(Error error) {
  return error == kConnectionAborted || error == ERROR_INTERNET_CONNECTION_RESET;
}

}  // namespace

/// Begins an exchange, at the original address.
static Error Begin(Request* request) {
  request->status = 0;
  if (std::exchange(request->redirects, 0) == 0) return kNone;
  return UnlessNoMemory(kNotEnoughMemory, [&] { return OpenAt(request, request->origin, false); });
}

Error Send(Request* request, ULONG total) {
  const Timeouts& timeouts = request->connection.session.timeouts;
  if (!std::exchange(request->mustResend, false))
    if (const Error error = Begin(request)) return error;
  // Sending includes connecting. In LONGLONG the sum of two large limits cannot overflow.
  const Watch watch(request->handle, LONGLONG{timeouts.connect} + timeouts.transfer);
  request->dropped = kNone;
  request->lengthIsKnown = false;
  request->blockAt = request->blockEnd = 0;
  INTERNET_BUFFERSW buffers = {};
  buffers.dwStructSize = sizeof buffers;
  buffers.dwBufferTotal = total;
  if (::HttpSendRequestExW(request->handle.get(), &buffers, nullptr, 0, 0)) return kNone;
  return watch.Passed() ? kTimedOut : LastError();
}

// Pieces are at most 64 KiB, because WinINet may report a connection that breaks as a timeout when
// more data than fits the socket's buffer is waiting.
Error Write(Request* request, const void* bytes, std::size_t size) {
  constexpr std::size_t kMostAtOnce = 64 * 1024;
  if (request->dropped) return kNone;
  const char* at = static_cast<const char*>(bytes);
  while (size > 0) {
    DWORD written = 0;
    const auto part = static_cast<DWORD>(std::min(size, kMostAtOnce));
    if (!::InternetWriteFile(request->handle.get(), at, part, &written) || written == 0) {
      const Error error = LastError();
      if (!IsAborted(error)) return error;
      request->dropped = error;
      return kNone;
    }
    at += written;
    size -= written;
  }
  return kNone;
}

/// Waits for the head of the reply. `ask` sends the request, or ends it.
template <class Ask>
static Error Await(Request* request, LONGLONG milliseconds, Ask ask) {
  const Watch watch(request->handle, milliseconds);
  const Error error = ask(request->handle.get()) ? kNone : LastError();
  if (error == kForceRetry) return error;
  DWORD status = 0, size = sizeof status;
  // WinINet may report a connection that broke or timed out as an empty reply.
  if (!::HttpQueryInfoW(request->handle.get(), HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER,
                        &status, &size, nullptr) ||
      status == 0) {
    if (watch.Passed()) return kTimedOut;
    if (request->dropped) return request->dropped;
    return error ? error : kConnectionAborted;
  }
  request->status = static_cast<int>(status);
  const Error lengthError = ContentLength(request, &request->left);
  request->lengthIsKnown = lengthError == kNone;
  return lengthError == kHeaderNotFound ? kNone : lengthError;
}

/// Follows a redirect. kForceRetry when the new address has to receive the body.
static Error Follow(Request* request, const Place& place, bool byGet) {
  const Timeouts& timeouts = request->connection.session.timeouts;
  if (request->place.secure && !place.secure) return kHttpsToHttpOnRedirect;
  if (++request->redirects > kMostRedirects) return kRedirectFailed;
  if (const Error error = OpenAt(request, place, byGet || request->isGet)) return error;
  if (!request->isGet) return kForceRetry;
  return Await(request, LONGLONG{timeouts.connect} + timeouts.transfer,
               [](HINTERNET handle) { return ::HttpSendRequestW(handle, nullptr, 0, nullptr, 0); });
}

Error End(Request* request) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    Error error = Await(request, request->connection.session.timeouts.transfer,
                        [](HINTERNET handle) { return ::HttpEndRequestW(handle, nullptr, 0, 0); });
    bool byGet = false;
    while (!error && win32::LeadsOn(request->status, &byGet)) {
      Place place;
      error = win32::NextPlace(request->handle.get(), &place);
      if (error == kHeaderNotFound) return kNone;
      if (!error) error = Follow(request, place, byGet);
    }
    request->mustResend = error == kForceRetry;
    return error;
  });
}

Error Status(Request* request, int* status) {
  *status = request->status;
  return *status ? kNone : kHeaderNotFound;
}

/// One of the Content-Length headers of the reply, numbered from 0.
static Error LengthAt(Request* request, DWORD index, std::uint64_t* length) {
  char text[32];
  DWORD size = sizeof text;
  if (!::HttpQueryInfoA(request->handle.get(), HTTP_QUERY_CONTENT_LENGTH, text, &size, &index))
    return ::GetLastError() == ERROR_INSUFFICIENT_BUFFER ? kInvalidReply : LastError();
  return ParseLength({text, size}, length) ? kNone : kInvalidReply;
}

/// Refuses a reply with lengths that differ, because it is not clear where it ends.
Error ContentLength(Request* request, std::uint64_t* length) {
  const Error error = LengthAt(request, 0, length);
  std::uint64_t other = 0;
  for (DWORD index = 1; !error; ++index) {
    const Error otherError = LengthAt(request, index, &other);
    if (otherError == kHeaderNotFound) break;
    if (otherError || other != *length) return kInvalidReply;
  }
  return error;
}

bool Redirected(Request* request) {
  return request->isGet;
}

// Reads only what has arrived: for more, WinINet would wait until all of it is there, however
// slowly it comes.
static Error Fetch(Request* request) {
  HINTERNET const handle = request->handle.get();
  DWORD available = 0, got = 0;
  if (!::InternetQueryDataAvailable(handle, &available, 0, 0)) return LastError();
  const DWORD size = std::min<DWORD>(std::max<DWORD>(available, 1), sizeof request->block);
  if (!::InternetReadFile(handle, request->block, size, &got)) return LastError();
  request->blockAt = 0;
  request->blockEnd = got;
  return kNone;
}

Error Read(Request* request, void* bytes, ULONG capacity, ULONG* got) {
  const ULONGLONG end =
      ::GetTickCount64() + static_cast<ULONGLONG>(request->connection.session.timeouts.transfer);
  *got = 0;
  if (request->lengthIsKnown)
    capacity = static_cast<ULONG>(std::min<std::uint64_t>(capacity, request->left));
  while (*got < capacity) {
    if (request->blockAt == request->blockEnd)
      if (const Error error = Fetch(request)) return error;
    const ULONG size = std::min(capacity - *got, request->blockEnd - request->blockAt);
    if (size == 0) break;
    std::memcpy(static_cast<char*>(bytes) + *got, request->block + request->blockAt, size);
    request->blockAt += size;
    *got += size;
    if (*got < capacity && ::GetTickCount64() >= end) return kTimedOut;
  }
  if (request->lengthIsKnown) {
    request->left -= *got;
    if (*got == 0 && request->left > 0) return kConnectionAborted;
  }
  return kNone;
}

Error HasEnded(Request* request, bool* ended) {
  *ended = request->lengthIsKnown && request->left == 0;
  if (*ended || request->blockAt != request->blockEnd) return kNone;
  const Error error = Fetch(request);
  *ended = request->blockAt == request->blockEnd;
  return error;
}

}  // namespace vosmere::http
