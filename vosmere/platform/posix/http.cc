// HTTP sessions, connections and requests by libcurl.
#include "vosmere/platform/internal/http.h"

#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/http_message.h"
#include "vosmere/platform/posix/http_transfer.h"
#include "vosmere/platform/posix/libcurl.h"

namespace vosmere::http {

struct Session {
  std::string agent;
  std::optional<std::string> proxy;
  Timeouts timeouts;
};

struct Connection {
  Session session;
  Address address;
  bool secure;
  std::optional<std::string> user, password;
};

namespace {

using posix::curl;
using posix::Set;

constexpr long kMostRedirects = 10;
constexpr long kProxyPort = 80;

/// Owns a list of header lines.
class HeaderList {
 public:
  HeaderList() = default;
  HeaderList(const HeaderList&) = delete;
  HeaderList& operator=(const HeaderList&) = delete;
  ~HeaderList() { curl().slist_free_all(list_); }

  void Add(const std::string& line) {
    curl_slist* const longer = curl().slist_append(list_, line.c_str());
    if (!longer) throw std::bad_alloc();
    list_ = longer;
  }
  void Clear() { curl().slist_free_all(std::exchange(list_, nullptr)); }
  curl_slist* get() const { return list_; }

 private:
  curl_slist* list_ = nullptr;
};

bool Begins(const std::string& line, const char* name) {
  return line.rfind(name, 0) == 0;
}

/// Sets an option if there is a text for it.
void SetTexts(CURL* easy, CURLoption option, const std::optional<std::string>& text) {
  if (text) Set(easy, option, text->c_str());
}

/// Takes the trusted certificates from the environment, as OpenSSL's own programs do.
void SetTrust(CURL* easy) {
  if (const char* const file = std::getenv("SSL_CERT_FILE")) Set(easy, CURLOPT_CAINFO, file);
  if (const char* const folder = std::getenv("SSL_CERT_DIR")) Set(easy, CURLOPT_CAPATH, folder);
}

}  // namespace

struct Request {
  Request(const Connection& connection, const WChar* path, bool keepConnection);
  /// Sets the headers before each new start, because a redirect has changed them.
  void SetHeaders(ULONG total);

  RequestHead head;
  posix::HttpTransfer transfer;
  HeaderList headers, forGet, forPost;
};

Request::Request(const Connection& c, const WChar* path, bool keepConnection)
    : transfer(c.session.timeouts) {
  head.target = RequestTarget(path);
  head.host = c.address.Text();
  head.agent = c.session.agent;
  head.keepConnection = keepConnection;

  CURL* const easy = transfer.easy();
  const std::string url = (c.secure ? "https://" : "http://") + c.address.name + ':' +
                          std::to_string(c.address.port) + head.target;
  Set(easy, CURLOPT_URL, url.c_str());
  Set(easy, CURLOPT_PATH_AS_IS, 1L);  // otherwise libcurl resolves "/../"
  Set(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_0));
  Set(easy, CURLOPT_HEADEROPT, static_cast<long>(CURLHEADER_SEPARATE));  // not with CONNECT
  Set(easy, CURLOPT_MAXREDIRS, kMostRedirects);
  Set(easy, CURLOPT_REDIR_PROTOCOLS_STR, c.secure ? "https" : "http,https");  // no HTTPS to HTTP
  Set(easy, CURLOPT_COOKIEFILE, "");  // keeps cookies for the duration of the request
  Set(easy, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_ANY));
  SetTexts(easy, CURLOPT_USERNAME, c.user);
  SetTexts(easy, CURLOPT_PASSWORD, c.password);
  Set(easy, CURLOPT_PROXYPORT, kProxyPort);
  SetTexts(easy, CURLOPT_PROXY, c.session.proxy);
  // A proxy that was chosen applies to all hosts, whatever no_proxy says.
  if (c.session.proxy) Set(easy, CURLOPT_NOPROXY, "");
  SetTrust(easy);
}

void Request::SetHeaders(ULONG total) {
  for (HeaderList* const list : {&headers, &forGet, &forPost}) list->Clear();
  headers.Add("Host:");  // keeps libcurl from sending its own first
  for (const std::string& line : head.Lines(total)) {
    headers.Add(line);
    // After a redirect libcurl sets the Host of the new address itself, and a GET has no body.
    if (Begins(line, "Host:")) continue;
    forPost.Add(line);
    if (!Begins(line, "Content-")) forGet.Add(line);
  }
  Set(transfer.easy(), CURLOPT_HTTPHEADER, headers.get());
  transfer.SetRedirectHeaders(forGet.get(), forPost.get());
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
    Session made{agent, std::nullopt, timeouts};
    if (proxy) made.proxy = BytesOf(kCodePageUtf8, WideView(proxy));
    session->reset(new Session(std::move(made)));
    return kNone;
  });
}

Error Connect(Session* session, const WChar* host, bool secure, Owned<Connection>* connection) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    Address address;
    if (!ParseAddress(host, secure, &address)) return kInvalidUrl;
    connection->reset(new Connection{*session, address, secure, std::nullopt, std::nullopt});
    return kNone;
  });
}

Error SetCredentials(Connection* connection, const WChar* user, const WChar* password) {
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    std::string name = BytesOf(kCodePageUtf8, WideView(user));
    if (!IsHeaderLine(name)) return kInvalidParameter;
    connection->user = std::move(name);
    connection->password = BytesOf(kCodePageUtf8, WideView(password));
    return kNone;
  });
}

Error OpenPost(Connection* connection, const WChar* path, bool keepConnection,
               Owned<Request>* request) {
  if (!posix::LoadLibcurl()) return kInternal;
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    request->reset(new Request(*connection, path, keepConnection));
    return kNone;
  });
}

Error AddHeader(Request* request, const char* line) {
  if (!IsHeaderLine(line)) return kInvalidParameter;
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    request->head.Set(line);
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
  return UnlessNoMemory(kNotEnoughMemory, [&] {
    // A request that libcurl repeats keeps the headers of its redirect.
    if (!request->transfer.MustResend()) request->SetHeaders(total);
    return request->transfer.Send(total);
  });
}

Error Write(Request* request, const void* bytes, std::size_t size) {
  return request->transfer.Write(static_cast<const char*>(bytes), size);
}

Error End(Request* request) {
  return request->transfer.End();
}

Error Status(Request* request, int* status) {
  *status = request->transfer.Status();
  return *status ? kNone : kHeaderNotFound;
}

bool Redirected(Request* request) {
  return request->transfer.Redirected();
}

Error ContentLength(Request* request, std::uint64_t* length) {
  curl_off_t announced = -1;
  curl().easy_getinfo(request->transfer.easy(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
  if (announced < 0) return kHeaderNotFound;
  *length = static_cast<std::uint64_t>(announced);
  return kNone;
}

Error Read(Request* request, void* bytes, ULONG capacity, ULONG* got) {
  std::size_t size = 0;
  const Error error = request->transfer.Read(static_cast<char*>(bytes), capacity, &size);
  *got = static_cast<ULONG>(size);
  return error;
}

Error HasEnded(Request* request, bool* ended) {
  return request->transfer.HasEnded(ended);
}

}  // namespace vosmere::http
