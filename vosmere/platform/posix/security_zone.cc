#include "vosmere/platform/security_zone.h"

#include <algorithm>
#include <string_view>

#include "vosmere/base/wide_view.h"

namespace vosmere {
namespace {

constexpr bool IsSlash(WChar unit) {
  return unit == '/' || unit == '\\';
}
constexpr bool IsDigit(WChar unit) {
  return unit >= '0' && unit <= '9';
}
constexpr bool IsLetter(WChar unit) {
  return FoldAscii(unit) >= 'a' && FoldAscii(unit) <= 'z';
}

/// Without regard to ASCII case; `word` is in lower case.
bool Is(WideView text, std::string_view word) {
  return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                    [](WChar a, char b) { return FoldAscii(a) == b; });
}

/// `text` before the first unit that `isEnd` accepts.
template <class Test>
WideView Before(WideView text, Test isEnd) {
  return text.First(std::find_if(text.begin(), text.end(), isEnd) - text.begin());
}

/// `text` after its last `unit`, all of it when there is none.
WideView AfterLast(WideView text, WChar unit) {
  std::size_t start = text.size;
  while (start > 0 && text[start - 1] != unit) --start;
  return text.From(start);
}

/// The host of a user, host and port.
WideView HostOf(WideView authority) {
  const WideView host = AfterLast(authority, '@');
  const WideView port = AfterLast(host, ':');
  const bool hasPort = port.size < host.size && std::all_of(port.begin(), port.end(), IsDigit);
  return hasPort ? host.First(host.size - port.size - 1) : host;
}

bool IsLoopback(WideView host) {
  return Is(host, "[::1]") ||
         (host.size > 4 && Is(host.First(4), "127.") &&
          std::all_of(host.begin(), host.end(), [](WChar c) { return c == '.' || IsDigit(c); }));
}

/// A name that only the own network resolves. One that begins with a digit may be the number of any
/// host, and units beyond these may turn into a dot or end the name elsewhere.
bool IsPlainName(WideView host) {
  return !host.empty() && IsLetter(host[0]) && std::all_of(host.begin(), host.end(), [](WChar c) {
    return IsLetter(c) || IsDigit(c) || c == '-' || c == '_';
  });
}

LONG ZoneOfHost(WideView authority) {
  const WideView host = HostOf(authority);
  return IsPlainName(host) || IsLoopback(host) ? kZoneIntranet : kZoneInternet;
}

LONG ZoneOfPath(WideView path) {
  if (path.size < 2 || !IsSlash(path[0]) || !IsSlash(path[1])) return kZoneLocalMachine;
  const WideView server = Before(path.From(2), IsSlash);
  return server.empty() || Is(server, "localhost") ? kZoneLocalMachine : ZoneOfHost(server);
}

}  // namespace

LONG SystemSecurityZone(const WChar* url) {
  const WideView address(url);
  const WideView scheme = Before(address, [](WChar c) { return c == ':'; });
  const WideView rest = address.From(scheme.size + 1);
  const bool isDrive = scheme.size == 1 && IsLetter(scheme[0]) && !rest.empty() && IsSlash(rest[0]);
  if (isDrive || (!address.empty() && IsSlash(address[0]))) return ZoneOfPath(address);
  if (Is(scheme, "file") && !rest.empty()) return ZoneOfPath(rest);
  const bool hasHost = Is(scheme, "http") || Is(scheme, "https") || Is(scheme, "ftp");
  if (!hasHost || !Is(rest.First(2), "//")) return kZoneInternet;
  return ZoneOfHost(Before(rest.From(2), [](WChar c) { return c == '/' || c == '?' || c == '#'; }));
}

}  // namespace vosmere
