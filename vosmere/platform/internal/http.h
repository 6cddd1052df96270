// HTTP by the system's own client: WinINet on Windows, libcurl elsewhere. One HTTP/1.0 POST at a
// time, its body written piece by piece, from whatever memory, by the caller.
//
// Every operation answers with kNone or with the number of an error, as Windows numbers them, on
// every system. None waits for ever: Timeouts says how long. Handles may be closed in any order.
//
// HTTPS checks the server's certificate against the system's trusted ones; on Linux the variables
// SSL_CERT_FILE and SSL_CERT_DIR name others. Ten redirects in turn are followed: 301, 302 and 303
// by a GET without the body, 307 and 308 by the same request again, body included; none from HTTPS
// to HTTP.
//
// What differs: a head of more than 256 KiB, or a line of more than 100, is refused on Linux alone;
// elsewhere the system's client draws the line.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere::http {

enum Error : ULONG {
  kNone = 0,
  kInvalidHandle = 6,
  kNotEnoughMemory = 8,
  kInvalidParameter = 87,
  kFileTooLarge = 223,
  kFileInvalid = 1006,  ///< the file behind a mapping has shrunk
  kTimedOut = 12002,
  kInternal = 12004,
  kInvalidUrl = 12005,
  kNameNotResolved = 12007,
  kIncorrectPassword = 12014,
  kCancelled = 12017,
  kCannotConnect = 12029,
  kConnectionAborted = 12030,
  kForceRetry = 12032,  ///< not a failure: send the request once more
  kCertificateDateInvalid = 12037,
  kCertificateNameInvalid = 12038,
  kHttpsToHttpOnRedirect = 12040,
  kCertificateUntrusted = 12045,
  kHeaderNotFound = 12150,
  kInvalidReply = 12152,
  kRedirectFailed = 12156,
  kSecureChannelFailed = 12157,
};

/// In milliseconds.
struct Timeouts {
  /// For finding the host, connecting to it and agreeing on a key.
  LONG connect;
  /// Without a byte moving while the body goes out; for the whole head of the reply; and for each
  /// Read. On Windows a byte has moved when the system has taken it: a link so slow that what the
  /// system still holds at the end takes longer ends in kTimedOut.
  LONG transfer;
};

struct Session;
struct Connection;
struct Request;

void Close(Session* session);
void Close(Connection* connection);
void Close(Request* request);

struct Closer {
  template <class Handle>
  void operator()(Handle* handle) const {
    Close(handle);
  }
};
template <class Handle>
using Owned = std::unique_ptr<Handle, Closer>;

/// `proxy` is `name:port`; null asks the system: its preconfigured access on Windows, the variables
/// http_proxy, https_proxy and no_proxy on Linux.
Error Open(const char* agent, const WChar* proxy, const Timeouts& timeouts,
           Owned<Session>* session);

/// `host` may carry a port (`name:8080`); without one the protocol's own is used. Connects with the
/// first request.
Error Connect(Session* session, const WChar* host, bool secure, Owned<Connection>* connection);

/// For a server that asks who is there. The request then ends in kForceRetry once; on Linux once
/// more where the server ends the connection that it asked on. A name with a line end is
/// kInvalidParameter: it would stand in a header.
Error SetCredentials(Connection* connection, const WChar* user, const WChar* password);

/// A POST of `path` that passes by all caches. Every request has a connection of its own.
Error OpenPost(Connection* connection, const WChar* path, bool keepConnection,
               Owned<Request>* request);

/// A header line, without its end; it takes the place of an added one with the same name.
/// kInvalidParameter for more than one line.
Error AddHeader(Request* request, const char* line);

/// What Send will send for a body of `total` bytes: everything up to the body.
Error HeadText(Request* request, ULONG total, std::string* text);

/// Starts the request and announces `total` bytes, which Write is to write. A request may be sent
/// again once its reply has been read, and after kForceRetry.
Error Send(Request* request, ULONG total);

/// Where a file's memory has shrunk, kFileInvalid. A server may answer before it has read all, and
/// go; what is written then is dropped, and End has the reply.
Error Write(Request* request, const void* bytes, std::size_t size);

/// Waits for the head of the reply. kForceRetry: send and write all again.
Error End(Request* request);

/// Of the last reply; kHeaderNotFound where there is none. A length that is no number, one beyond
/// 63 bits, and two that differ, make End fail with kInvalidReply.
Error Status(Request* request, int* status);
Error ContentLength(Request* request, std::uint64_t* length);
/// Whether a redirect has made a GET of the request, and the reply is to that.
bool Redirected(Request* request);

/// Fills `bytes` unless the reply ends within; `*got` is 0 at its end. A reply shorter than its
/// announced length ends in kConnectionAborted, of a longer one the rest is not read.
Error Read(Request* request, void* bytes, ULONG capacity, ULONG* got);

/// Whether nothing of the reply is left to be read. Waits for the next byte, or the end.
Error HasEnded(Request* request, bool* ended);

}  // namespace vosmere::http
