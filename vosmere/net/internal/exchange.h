// Sending a request, body and all.
#pragma once

#include "vosmere/platform/internal/http.h"

namespace vosmere {

/// So often a server may ask for the request once more; who asks again is given up.
inline constexpr int kMostRetries = 5;

/// Whether the server, or a proxy, asks who is there.
inline bool IsAccessDenied(int status) {
  return status == 401 || status == 407;
}

/// The error of a server that asks for the request again and again.
inline http::Error WhyGivenUp(http::Request* request) {
  int status = 0;
  http::Status(request, &status);
  return IsAccessDenied(status) ? http::kIncorrectPassword : http::kRedirectFailed;
}

/// Sends a request of `total` bytes that `write` writes, up to the head of the reply. `*started`
/// tells whether it was the start that failed.
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

/// A short body in one go.
inline http::Error SendWhole(http::Request* request, const char* body, std::size_t size) {
  bool started;
  return Exchange(
      request, static_cast<ULONG>(size), [&] { return http::Write(request, body, size); },
      &started);
}

}  // namespace vosmere
