// Where a request goes, and where its reply leads. The system's client would follow by itself, but
// loses the body of what is to be sent again, and not every one stops where servers lead in
// circles.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <wininet.h>

#include <string>

#include "vosmere/platform/internal/http.h"

namespace vosmere::win32 {

struct Place {
  std::wstring host;
  INTERNET_PORT port = 0;
  bool secure = false;
  std::wstring target;

  bool HasServerOf(const Place& other) const {
    return host == other.host && port == other.port && secure == other.secure;
  }
};

/// Throws std::bad_alloc.
std::wstring Widened(const std::string& utf8);

/// Whether a reply with this status leads elsewhere, and whether by a GET.
bool LeadsOn(int status, bool* byGet);

/// What the reply names as its place; kHeaderNotFound when it names none. Throws std::bad_alloc.
http::Error NextPlace(HINTERNET request, Place* place);

}  // namespace vosmere::win32
