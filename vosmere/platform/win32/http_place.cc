// The addresses of redirects.
#include "vosmere/platform/win32/http_place.h"

#include <algorithm>

#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/http_message.h"
#include "vosmere/platform/win32/com.h"

namespace vosmere::win32 {

std::wstring Widened(const std::string& utf8) {
  std::wstring text(utf8.size(), L'\0');
  text.resize(static_cast<std::size_t>(BytesToWide(kCodePageUtf8, utf8.data(),
                                                   static_cast<int>(utf8.size()), Ours(text.data()),
                                                   static_cast<int>(text.size()))));
  return text;
}

bool LeadsOn(int status, bool* byGet) {
  *byGet = status >= 301 && status <= 303;
  return *byGet || status == 307 || status == 308;
}

http::Error NextPlace(HINTERNET request, Place* place) {
  constexpr DWORD kMost = 4096;
  wchar_t base[kMost], named[kMost], whole[kMost];
  DWORD size = sizeof named;
  if (!::HttpQueryInfoW(request, HTTP_QUERY_LOCATION, named, &size, nullptr))
    return ::GetLastError() == ERROR_INSUFFICIENT_BUFFER ? http::kRedirectFailed
                                                         : http::kHeaderNotFound;
  size = sizeof base;
  DWORD length = kMost;
  URL_COMPONENTSW parts = {};
  parts.dwStructSize = sizeof parts;
  parts.dwHostNameLength = parts.dwUrlPathLength = 1;  // asks for pointers into the text
  if (!::InternetQueryOptionW(request, INTERNET_OPTION_URL, base, &size) ||
      !::InternetCombineUrlW(base, named, whole, &length, 0) ||
      !::InternetCrackUrlW(whole, length, 0, &parts) || parts.dwHostNameLength == 0)
    return http::kRedirectFailed;
  if (parts.nScheme != INTERNET_SCHEME_HTTP && parts.nScheme != INTERNET_SCHEME_HTTPS)
    return http::kRedirectFailed;
  std::wstring target(parts.lpszUrlPath, whole + length);
  target.erase(std::min(target.find(L'#'), target.size()));
  *place = {{parts.lpszHostName, parts.dwHostNameLength},
            parts.nPort,
            parts.nScheme == INTERNET_SCHEME_HTTPS,
            Widened(http::RequestTarget(Ours(target.c_str())))};
  return http::kNone;
}

}  // namespace vosmere::win32
