#include "vosmere/platform/internal/http.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <string>

#include "vosmere/base/no_memory.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/http_message.h"
#include "vosmere/platform/win32/com.h"
#include "vosmere/platform/win32/http_handle.h"

namespace vosmere::http {
namespace {

using win32::Handle;
using win32::Watch;

/// The client hands some of the sockets' numbers on.
Error LastError() {
  const DWORD error = ::GetLastError();
  switch (error) {
    case WSAECONNABORTED:
    case WSAECONNRESET: return kConnectionAborted;
    case WSAETIMEDOUT: return kTimedOut;
    case WSAECONNREFUSED: return kCannotConnect;
    case WSAHOST_NOT_FOUND: return kNameNotResolved;
    case ERROR_SUCCESS: return kInternal;
    default: return static_cast<Error>(error);
  }
}

bool IsAborted(Error error) {
  return error == kConnectionAborted || error == ERROR_INTERNET_CONNECTION_RESET;
}

std::wstring Widened(const std::string& utf8) {
  std::wstring text(utf8.size(), L'\0');
  text.resize(static_cast<std::size_t>(
      BytesToWide(kCodePageUtf8, utf8.data(), static_cast<int>(utf8.size()),
                  win32::Ours(text.data()), static_cast<int>(text.size()))));
  return text;
}

void SetLimit(HINTERNET handle, DWORD option, LONG value) {
  auto limit = static_cast<DWORD>(value);
  ::InternetSetOptionW(handle, option, &limit, sizeof limit);
}

void SetLimits(HINTERNET handle, const Timeouts& timeouts) {
  SetLimit(handle, INTERNET_OPTION_CONNECT_RETRIES, 1);
  SetLimit(handle, INTERNET_OPTION_CONNECT_TIMEOUT, timeouts.connect);
  SetLimit(handle, INTERNET_OPTION_SEND_TIMEOUT, timeouts.transfer);
  SetLimit(handle, INTERNET_OPTION_RECEIVE_TIMEOUT, timeouts.transfer);
}

/// With its length in bytes. The client may take that for characters, so as many follow it.
bool SetText(HINTERNET handle, DWORD option, const WChar* text) {
  const std::size_t length = WideLength(text), size = length * sizeof(WChar);
  std::wstring padded(win32::Native(text), length);
  padded.resize(size);
  return ::InternetSetOptionW(handle, option, padded.data(), static_cast<DWORD>(size));
}

/// What was opened stays its owner's; what was not leaves none.
template <class Opening>
Error Opened(Owned<Opening>& owner, const Timeouts& timeouts) {
  if (HINTERNET const handle = owner->handle.get()) {
    SetLimits(handle, timeouts);
    return kNone;
  }
  const Error error = LastError();
  owner.reset();
  return error;
}

}  // namespace

struct Session {
  Handle handle;
  std::string agent;
  Timeouts timeouts;
};

struct Connection {
  Handle handle;
  std::string agent;
  Timeouts timeouts;
  Address address;
  bool secure;
};

struct Request {
  Handle handle;
  RequestHead head;
  Timeouts timeouts;
  Error dropped = kNone;       // why the server does not take the body any more
  bool lengthIsKnown = false;  // of the reply
  std::uint64_t left = 0;
  ULONG blockAt = 0, blockEnd = 0;  // what the reply has brought and nobody has read
  char block[16 * 1024] = {};
};

void Close(Session* session) {
  delete session;
}

void Close(Connection* connection) {
  delete connection;
}

void Close(Request* request) {
  delete request;
}

Error Open(const char* agent, const WChar* proxy, const Timeouts& timeouts,
           Owned<Session>* session) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    const DWORD access = proxy ? INTERNET_OPEN_TYPE_PROXY : INTERNET_OPEN_TYPE_PRECONFIG;
    session->reset(new Session{
        Handle(::InternetOpenW(Widened(agent).c_str(), access, win32::Native(proxy), nullptr, 0)),
        agent, timeouts});
    return Opened(*session, timeouts);
  });
}

Error Connect(Session* session, const WChar* host, bool secure, Owned<Connection>* connection) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    Address address;
    if (!ParseAddress(host, secure, &address)) return kInvalidUrl;
    connection->reset(new Connection{
        Handle(::InternetConnectW(session->handle.get(), Widened(address.name).c_str(),
                                  static_cast<INTERNET_PORT>(address.port), L"", L"",
                                  INTERNET_SERVICE_HTTP, 0, 0)),
        session->agent, session->timeouts, address, secure});
    return Opened(*connection, session->timeouts);
  });
}

Error SetCredentials(Connection* connection, const WChar* user, const WChar* password) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    if (!IsHeaderLine(BytesOf(kCodePageUtf8, WideView(user)))) return kInvalidParameter;
    HINTERNET const handle = connection->handle.get();
    return SetText(handle, INTERNET_OPTION_USERNAME, user) &&
                   SetText(handle, INTERNET_OPTION_PASSWORD, password)
               ? kNone
               : LastError();
  });
}

Error OpenPost(Connection* connection, const WChar* path, bool keepConnection,
               Owned<Request>* request) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    const wchar_t* accepted[] = {L"*/*", nullptr};
    const RequestHead head = {
        RequestTarget(path), connection->address.Text(), connection->agent, {}, keepConnection};
    const DWORD flags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE |
                        (keepConnection ? INTERNET_FLAG_KEEP_CONNECTION : 0) |
                        (connection->secure ? INTERNET_FLAG_SECURE : 0);
    request->reset(new Request{
        Handle(::HttpOpenRequestW(connection->handle.get(), L"POST", Widened(head.target).c_str(),
                                  L"HTTP/1.0", L"", accepted, flags, 0)),
        head, connection->timeouts});
    return Opened(*request, connection->timeouts);
  });
}

Error AddHeader(Request* request, const char* line) {
  if (!IsHeaderLine(line)) return kInvalidParameter;
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    const std::wstring text = Widened(std::string(line) + "\r\n");
    if (!::HttpAddRequestHeadersW(request->handle.get(), text.c_str(),
                                  static_cast<DWORD>(text.size()), HTTP_ADDREQ_FLAG_ADD))
      return LastError();
    request->head.added.push_back(line);
    return kNone;
  });
}

Error HeadText(Request* request, ULONG total, std::string* text) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    *text = request->head.Text(total);
    return kNone;
  });
}

Error Send(Request* request, ULONG total) {
  const Watch watch(request->handle,
                    LONGLONG{request->timeouts.connect} + request->timeouts.transfer);
  request->dropped = kNone;
  request->lengthIsKnown = false;
  request->blockAt = request->blockEnd = 0;
  INTERNET_BUFFERSW buffers = {};
  buffers.dwStructSize = sizeof buffers;
  buffers.dwBufferTotal = total;
  if (::HttpSendRequestExW(request->handle.get(), &buffers, nullptr, 0, 0)) return kNone;
  return watch.Passed() ? kTimedOut : LastError();
}

// A connection that breaks off while more than the socket's buffer waits may be told as a timeout.
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

Error End(Request* request) {
  const Watch watch(request->handle, request->timeouts.transfer);
  const Error error = ::HttpEndRequestW(request->handle.get(), nullptr, 0, 0) ? kNone : LastError();
  if (error == kForceRetry) return error;
  int status = 0;
  // A connection that broke or timed out may pass for an empty reply.
  if (Status(request, &status) != kNone) {
    if (watch.Passed()) return kTimedOut;
    if (request->dropped) return request->dropped;
    return error ? error : kInvalidReply;
  }
  const Error lengthError = ContentLength(request, &request->left);
  request->lengthIsKnown = lengthError == kNone;
  return lengthError == kHeaderNotFound ? kNone : lengthError;
}

Error Status(Request* request, int* status) {
  DWORD code = 0, size = sizeof code;
  if (!::HttpQueryInfoW(request->handle.get(), HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER,
                        &code, &size, nullptr))
    return LastError();
  *status = static_cast<int>(code);
  return code ? kNone : kHeaderNotFound;
}

Error ContentLength(Request* request, std::uint64_t* length) {
  char text[32];
  DWORD size = sizeof text;
  if (!::HttpQueryInfoA(request->handle.get(), HTTP_QUERY_CONTENT_LENGTH, text, &size, nullptr))
    return ::GetLastError() == ERROR_INSUFFICIENT_BUFFER ? kInvalidReply : LastError();
  const auto parsed = std::from_chars(text, text + size, *length);
  return parsed.ec == std::errc() && parsed.ptr == text + size ? kNone : kInvalidReply;
}

// Asked for more than has arrived the client would wait for all of it, however slowly it comes.
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
  const ULONGLONG end = ::GetTickCount64() + static_cast<ULONGLONG>(request->timeouts.transfer);
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

}  // namespace vosmere::http
