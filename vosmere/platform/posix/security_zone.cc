// Security zones where the system has no settings for them: the text of the address decides.
#include "vosmere/platform/security_zone.h"
#include "vosmere/base/ascii.h"

#include <algorithm>
#include <string_view>

#include "vosmere/base/wide_view.h"

namespace vosmere {
namespace {

constexpr bool IsSlash(WChar unit) {
  return unit == '/' || unit == '\\';
}

/// Case-insensitive comparison (ASCII) with a word in lower case.
bool Is(WideView text, std::string_view word) {
  return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                    [](WChar a, char b) { return ascii::Fold(a) == b; });
}

/// The part of `text` before the first code unit that `isEnd` accepts.
template <class Test>
WideView Before(WideView text, Test isEnd) {
  return text.First(std::find_if(text.begin(), text.end(), isEnd) - text.begin());
}

/// The part of `text` after the last `unit`; the whole text if there is none.
WideView AfterLast(WideView text, WChar unit) {
  std::size_t start = text.size;
  while (start > 0 && text[start - 1] != unit) --start;
  return text.From(start);
}

/// The host in the part of an address that has the user, host and port. The user ends at the last
/// "@".
WideView HostOf(WideView authority) {
  const WideView host = AfterLast(authority, '@');
  const WideView port = AfterLast(host, ':');
  const bool hasPort =
      port.size < host.size && std::all_of(port.begin(), port.end(), ascii::IsDigit<WChar>);
  return hasPort ? host.First(host.size - port.size - 1) : host;
}

bool IsLoopback(WideView host) {
  return Is(host, "[::1]") || (host.size > 4 && Is(host.First(4), "127.") &&
                               std::all_of(host.begin(), host.end(),
                                           [](WChar c) { return c == '.' || ascii::IsDigit(c); }));
}

/// Whether a host is a name that only the local network resolves. A name that begins with a digit
/// may be a number that means any address. Characters other than these may be turned into a dot, or
/// end the name, in programs that use the address.
bool IsPlainName(WideView host) {
  return !host.empty() && ascii::IsLetter(host[0]) &&
         std::all_of(host.begin(), host.end(), [](WChar c) {
           return ascii::IsLetter(c) || ascii::IsDigit(c) || c == '-' || c == '_';
         });
}

LONG ZoneOfHost(WideView authority) {
  const WideView host = HostOf(authority);
  return IsPlainName(host) || IsLoopback(host) ? kZoneIntranet : kZoneInternet;
}

/// A path is local unless it is a network path, which begins with two slashes and a server.
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
  const bool isDrive =
      scheme.size == 1 && ascii::IsLetter(scheme[0]) && !rest.empty() && IsSlash(rest[0]);
  if (isDrive || (!address.empty() && IsSlash(address[0]))) return ZoneOfPath(address);
  if (Is(scheme, "file") && !rest.empty()) return ZoneOfPath(rest);
  const bool hasHost = Is(scheme, "http") || Is(scheme, "https") || Is(scheme, "ftp");
  if (!hasHost || !Is(rest.First(2), "//")) return kZoneInternet;
  return ZoneOfHost(Before(rest.From(2), [](WChar c) { return c == '/' || c == '?' || c == '#'; }));
}

}  // namespace vosmere
