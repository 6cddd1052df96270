// Sends an HTTP request with its body, and repeats it when the client asks for that.
#pragma once

#include "vosmere/platform/internal/http.h"

namespace vosmere {

/// How often a request is repeated before it fails. Without a bound, a server could make it go on
/// for ever.
inline constexpr int kMostRetries = 5;

/// Whether the server (401) or a proxy (407) demands authentication.
inline bool IsAccessDenied(int status) {
  return status == 401 || status == 407;
}

/// The error for a request that was repeated too often: a password that was refused, or redirects.
inline http::Error WhyGivenUp(http::Request* request) {
  int status = 0;
  http::Status(request, &status);
  return IsAccessDenied(status) ? http::kIncorrectPassword : http::kRedirectFailed;
}

/// Sends a request with a body of `total` bytes, which `write` writes, and waits for the head of
/// the reply. `write` is called again when the request has to be repeated. `*started` receives
/// whether the request was started, so that a failure can be reported for the right step.
template <class WriteBody>
http::Error Exchange(http::Request* request, ULONG total, WriteBody write, bool* started) {
  http::Error error = http::kForceRetry;
  for (int retries = 0; error == http::kForceRetry && retries <= kMostRetries; ++retries) {
    *started = false;
    if ((error = http::Send(request, total))) break;
    *started = true;
    if ((error = write())) break;
    error = http::End(request);
  }
  return error == http::kForceRetry ? WhyGivenUp(request) : error;
}

/// Sends a request with a body that is in memory.
inline http::Error SendWhole(http::Request* request, const char* body, std::size_t size) {
  bool started;
  return Exchange(
      request, static_cast<ULONG>(size), [&] { return http::Write(request, body, size); },
      &started);
}

}  // namespace vosmere
