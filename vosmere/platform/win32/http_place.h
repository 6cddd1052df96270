// The address of a request, and of the redirect in its reply. WinINet could follow redirects
// itself, but it loses the body of a request that has to be repeated, and not every implementation
// stops at circular redirects.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <wininet.h>

#include <string>

#include "vosmere/platform/internal/http.h"

namespace vosmere::win32 {

/// The address of a request.
struct Place {
  std::wstring host;
  INTERNET_PORT port = 0;
  bool secure = false;
  std::wstring target;

  /// Whether both are on the same server.
  bool HasServerOf(const Place& other) const {
    return host == other.host && port == other.port && secure == other.secure;
  }
};

/// Converts UTF-8 to UTF-16. Throws std::bad_alloc.
std::wstring Widened(const std::string& utf8);

/// Whether a status is a redirect that is followed. `*byGet` receives whether that is done with a
/// GET.
bool LeadsOn(int status, bool* byGet);

/// Stores the address in the Location header of a reply. kHeaderNotFound when there is none,
/// kRedirectFailed when it cannot be followed. Throws std::bad_alloc.
http::Error NextPlace(HINTERNET request, Place* place);

}  // namespace vosmere::win32
