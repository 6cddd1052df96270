// HTTP through the system's own client: WinINet on Windows, libcurl on other systems. It sends one
// HTTP/1.0 POST at a time, whose body the caller writes piece by piece.
//
// Every operation returns kNone or an error number, with the numbers of Windows on every system. No
// operation blocks without limit (see Timeouts). Handles may be closed in any order.
//
// HTTPS verifies the server's certificate against those that the system trusts; on Linux the
// environment variables SSL_CERT_FILE and SSL_CERT_DIR select others. Up to ten redirects in a row
// are followed: 301, 302 and 303 with a GET without the body, 307 and 308 by repeating the request
// with its body. Redirects from HTTPS to HTTP are not followed.
//
// The platforms differ in their limits: only on Linux is a head of more than 256 KiB or a line of
// more than 100 KiB refused, on Windows the system's client sets the limits.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere::http {

/// Error numbers. Operations may also return other numbers of the Windows client.
enum Error : ULONG {
  kNone = 0,
  kInvalidHandle = 6,
  kNotEnoughMemory = 8,
  kInvalidParameter = 87,
  kFileTooLarge = 223,
  kFileInvalid = 1006,  ///< a mapped file has been truncated
  kTimedOut = 12002,
  kInternal = 12004,
  kInvalidUrl = 12005,
  kNameNotResolved = 12007,
  kIncorrectPassword = 12014,
  kCancelled = 12017,
  kCannotConnect = 12029,
  kConnectionAborted = 12030,
  kForceRetry = 12032,  ///< not a failure: send the request again
  kCertificateDateInvalid = 12037,
  kCertificateNameInvalid = 12038,
  kHttpsToHttpOnRedirect = 12040,
  kCertificateUntrusted = 12045,
  kHeaderNotFound = 12150,
  kInvalidReply = 12152,
  kRedirectFailed = 12156,
  kSecureChannelFailed = 12157,
};

/// Time limits in milliseconds.
struct Timeouts {
  /// For finding the host, connecting to it and the TLS handshake.
  LONG connect;
  /// The longest time without progress while the body is sent, and the longest wait for the
  /// complete head of the reply and for each Read. On Windows progress means that the system has
  /// accepted a byte. If the connection is so slow that sending the bytes that the system still
  /// holds at the end takes longer than this, End fails with kTimedOut.
  LONG transfer;
};

struct Session;
struct Connection;
struct Request;

/// Frees a handle. Null is ignored.
void Close(Session* session);
void Close(Connection* connection);
void Close(Request* request);

/// Deleter for handles.
struct Closer {
  template <class Handle>
  void operator()(Handle* handle) const {
    Close(handle);
  }
};
/// Owns a handle.
template <class Handle>
using Owned = std::unique_ptr<Handle, Closer>;

/// Opens a session. `agent` is the User-Agent. `proxy` is `name:port`; null uses the system's
/// configuration: its preconfigured access on Windows, the environment variables http_proxy,
/// https_proxy and no_proxy on Linux.
Error Open(const char* agent, const WChar* proxy, const Timeouts& timeouts,
           Owned<Session>* session);

/// Prepares a connection; the network is not used before the first request. `host` may contain a
/// port (`name:8080`), otherwise the protocol's default port is used.
Error Connect(Session* session, const WChar* host, bool secure, Owned<Connection>* connection);

/// HTTP authentication: used when the server answers 401. End then returns kForceRetry once; on
/// Linux it does so once more when the server closes the connection on which it demanded
/// authentication. A user name with a line end fails with kInvalidParameter, since it would end the
/// header line.
Error SetCredentials(Connection* connection, const WChar* user, const WChar* password);

/// Opens a POST request for `path` that bypasses all caches. Every request has a connection of its
/// own.
Error OpenPost(Connection* connection, const WChar* path, bool keepConnection,
               Owned<Request>* request);

/// Adds a header line, given without its line end, and replaces an added line with the same name.
/// Fails with kInvalidParameter if the text contains a line end.
Error AddHeader(Request* request, const char* line);

/// Stores what Send would send before a body of `total` bytes: the request line and the header.
Error HeadText(Request* request, ULONG total, std::string* text);

/// Starts the request and announces a body of `total` bytes, which Write then has to write. A
/// request may be sent again after its reply has been read, and after kForceRetry.
Error Send(Request* request, ULONG total);

/// Writes a part of the body. Fails with kFileInvalid when the bytes are those of a mapped file
/// that was truncated. A server may reply and close the connection before it has read everything;
/// later parts are then dropped, and End delivers the reply.
Error Write(Request* request, const void* bytes, std::size_t size);

/// Waits for the head of the reply. After kForceRetry the request has to be sent and its whole body
/// written again.
Error End(Request* request);

/// The status code and the Content-Length of the last reply; kHeaderNotFound when there is none.
/// End fails with kInvalidReply if a length is not a number, does not fit in 63 bits, or differs
/// from another one.
Error Status(Request* request, int* status);
Error ContentLength(Request* request, std::uint64_t* length);
/// Whether a redirect has turned the request into a GET, so that the reply is to that GET.
bool Redirected(Request* request);

/// Reads `capacity` bytes of the reply, fewer only at its end; `*got` is 0 at the end. A reply that
/// is shorter than announced ends with kConnectionAborted; bytes beyond the announced length are
/// not read.
Error Read(Request* request, void* bytes, ULONG capacity, ULONG* got);

/// Stores whether the whole reply has been read. Waits for the next byte or the end.
Error HasEnded(Request* request, bool* ended);

}  // namespace vosmere::http
