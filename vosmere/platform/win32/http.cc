// HTTP sessions, connections and requests through WinINet.
#include "vosmere/platform/internal/http.h"

#include <new>
#include <string>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/http_message.h"
#include "vosmere/platform/win32/com.h"
#include "vosmere/platform/win32/http_request.h"

namespace vosmere::http {
namespace {

using win32::Handle;
using win32::Place;
using win32::Widened;

void SetLimit(HINTERNET handle, DWORD option, LONG value) {
  auto limit = static_cast<DWORD>(value);
  ::InternetSetOptionW(handle, option, &limit, sizeof limit);
}

/// Sets an option that is a text. The length is given in bytes. The client may take it for a number
/// of characters and read beyond the text, so the buffer is padded to that many.
bool SetText(HINTERNET handle, DWORD option, const WChar* text) {
  const std::size_t length = WideLength(text), size = length * sizeof(WChar);
  std::wstring padded(win32::Native(text), length);
  padded.resize(size);
  return ::InternetSetOptionW(handle, option, padded.data(), static_cast<DWORD>(size));
}

}  // namespace

/// WinINet passes some socket errors on, which are converted here.
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

/// Sets the time limits of a new handle. Returns the error if the handle could not be opened.
static Error WithLimits(const Handle& owner, const Timeouts& timeouts) {
  HINTERNET const handle = owner.get();
  if (!handle) return LastError();
  SetLimit(handle, INTERNET_OPTION_CONNECT_RETRIES, 1);  // else the limit applies to each attempt
  SetLimit(handle, INTERNET_OPTION_CONNECT_TIMEOUT, timeouts.connect);
  SetLimit(handle, INTERNET_OPTION_SEND_TIMEOUT, timeouts.transfer);
  SetLimit(handle, INTERNET_OPTION_RECEIVE_TIMEOUT, timeouts.transfer);
  return kNone;
}

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
    session->reset(new Session{std::make_shared<Handle>(), agent, timeouts});
    Handle& handle = *(*session)->handle;
    handle.Reset(::InternetOpenW(Widened(agent).c_str(), access, win32::Native(proxy), nullptr, 0));
    return WithLimits(handle, timeouts);
  });
}

Error Connect(Session* session, const WChar* host, bool secure, Owned<Connection>* connection) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    Address address;
    if (!ParseAddress(host, secure, &address)) return kInvalidUrl;
    connection->reset(new Connection{*session, std::make_shared<Handle>(), address, secure});
    Handle& handle = *(*connection)->handle;
    handle.Reset(::InternetConnectW(session->handle->get(), Widened(address.name).c_str(),
                                    static_cast<INTERNET_PORT>(address.port), L"", L"",
                                    INTERNET_SERVICE_HTTP, 0, 0));
    return WithLimits(handle, session->timeouts);
  });
}

Error SetCredentials(Connection* connection, const WChar* user, const WChar* password) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    if (!IsHeaderLine(BytesOf(kCodePageUtf8, WideView(user)))) return kInvalidParameter;
    HINTERNET const handle = connection->handle->get();
    return SetText(handle, INTERNET_OPTION_USERNAME, user) &&
                   SetText(handle, INTERNET_OPTION_PASSWORD, password)
               ? kNone
               : LastError();
  });
}

static bool AddLine(HINTERNET handle, const std::string& line) {
  const std::wstring text = Widened(line + "\r\n");
  return ::HttpAddRequestHeadersW(handle, text.c_str(), static_cast<DWORD>(text.size()),
                                  HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE);
}

/// Gets a connection for an address. On another server than the original one a new connection is
/// opened, so that it does not receive the user's name and password.
static Error ConnectTo(const Place& place, Request* request, HINTERNET* connection) {
  const Connection& own = request->connection;
  *connection = own.handle->get();
  if (place.HasServerOf(request->origin)) return kNone;
  request->elsewhere.Reset(::InternetConnectW(own.session.handle->get(), place.host.c_str(),
                                              place.port, L"", L"", INTERNET_SERVICE_HTTP, 0, 0));
  *connection = request->elsewhere.get();
  return WithLimits(request->elsewhere, own.session.timeouts);
}

/// The added headers are set again for the new handle, except those for a body in a GET.
Error OpenAt(Request* request, const Place& place, bool get) {
  const wchar_t* accepted[] = {L"*/*", nullptr};
  const DWORD flags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE |
                      INTERNET_FLAG_NO_AUTO_REDIRECT |
                      (request->head.keepConnection ? INTERNET_FLAG_KEEP_CONNECTION : 0) |
                      (place.secure ? INTERNET_FLAG_SECURE : 0);
  HINTERNET connection = nullptr;
  request->handle.Close();  // before its connection
  if (const Error error = ConnectTo(place, request, &connection)) return error;
  request->handle.Reset(::HttpOpenRequestW(connection, get ? L"GET" : L"POST", place.target.c_str(),
                                           L"HTTP/1.0", L"", accepted, flags, 0));
  if (const auto error = WithLimits(request->handle, request->connection.session.timeouts))
    return error;
  for (const std::string& line : request->head.added)
    if (!(get && line.rfind("Content-", 0) == 0) && !AddLine(request->handle.get(), line))
      return LastError();
  request->place = place;
  request->isGet = get;
  return kNone;
}

Error OpenPost(Connection* connection, const WChar* path, bool keepConnection,
               Owned<Request>* request) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    const Address& address = connection->address;
    const std::string target = RequestTarget(path);
    const Place origin = {Widened(address.name), static_cast<INTERNET_PORT>(address.port),
                          connection->secure, Widened(target)};
    request->reset(
        new Request{*connection,
                    origin,
                    {target, address.Text(), connection->session.agent, {}, keepConnection}});
    const Error error = OpenAt(request->get(), origin, false);
    if (error) request->reset();
    return error;
  });
}

Error AddHeader(Request* request, const char* line) {
  if (!IsHeaderLine(line)) return kInvalidParameter;
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    request->head.Set(line);
    return AddLine(request->handle.get(), line) ? kNone : LastError();
  });
}

Error HeadText(Request* request, ULONG total, std::string* text) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    *text = request->head.Text(total);
    return kNone;
  });
}

}  // namespace vosmere::http
