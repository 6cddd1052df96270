// The request line and header of an HTTP request.
#include "vosmere/platform/internal/http_message.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "vosmere/base/ascii.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"

namespace vosmere::http {
namespace {

constexpr unsigned kHttpPort = 80;
constexpr unsigned kHttpsPort = 443;

bool ParsePort(std::string_view digits, unsigned* port) {
  const char* const end = digits.data() + digits.size();
  const auto parsed = std::from_chars(digits.data(), end, *port);
  return parsed.ec == std::errc() && parsed.ptr == end && *port >= 1 && *port <= 65535;
}

/// Whether a host name is free of blanks, of characters that end a name in an address or header
/// line, and of non-ASCII characters. HTTP clients disagree on what these mean.
bool IsName(std::string_view name) {
  for (const char c : name)
    if (c <= ' ' || c >= 0x7F || std::string_view("/\\?#@%\"<>").find(c) != std::string_view::npos)
      return false;
  return !name.empty();
}

}  // namespace

std::string Address::Text() const {
  return ownPort ? name + ':' + std::to_string(port) : name;
}

bool ParseAddress(const WChar* host, bool secure, Address* address) {
  const std::string text = BytesOf(kCodePageUtf8, WideView(host));
  const std::size_t bracket = text.rfind(']');
  // The port comes after the bracket: an IPv6 address has colons of its own.
  const std::size_t colon = text.find(':', bracket == std::string::npos ? 0 : bracket);
  const unsigned usual = secure ? kHttpsPort : kHttpPort;
  address->name = text.substr(0, colon);
  address->port = usual;
  if (colon != std::string::npos &&
      !ParsePort(std::string_view(text).substr(colon + 1), &address->port))
    return false;
  address->ownPort = address->port != usual;
  return IsName(address->name);
}

std::string RequestTarget(const WChar* path) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const std::string text = BytesOf(kCodePageUtf8, WideView(path));
  std::string target;
  if (text.empty() || text[0] != '/') target = "/";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    // What is already percent-encoded stays as it is; a "#" would end the path.
    if (byte > ' ' && byte < 0x7F && byte != '#')
      target += c;
    else
      target.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
  }
  return target;
}

bool IsHeaderLine(std::string_view line) {
  return line.find_first_of("\r\n") == line.npos;
}

bool ParseLength(std::string_view text, std::uint64_t* length) {
  constexpr std::string_view kBlank = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(kBlank), text.size()));
  text.remove_suffix(text.size() - (text.find_last_not_of(kBlank) + 1));
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, *length);
  return parsed.ec == std::errc() && parsed.ptr == end &&
         *length <= std::numeric_limits<std::int64_t>::max();
}

void RequestHead::Set(std::string_view line) {
  const std::string_view name = line.substr(0, line.find(':'));
  std::erase_if(added, [&](std::string_view known) {
    known = known.substr(0, known.find(':'));
    return std::equal(known.begin(), known.end(), name.begin(), name.end(),
                      [](char a, char b) { return ascii::Fold(a) == ascii::Fold(b); });
  });
  added.emplace_back(line);
}

std::vector<std::string> RequestHead::Lines(ULONG bodyLength) const {
  std::vector<std::string> lines = {"Accept: */*"};
  lines.insert(lines.end(), added.begin(), added.end());
  lines.push_back("Host: " + host);
  lines.push_back("Content-Length: " + std::to_string(bodyLength));
  lines.push_back("User-Agent: " + agent);
  lines.push_back("Cache-Control: no-cache");
  if (keepConnection) lines.push_back("Connection: Keep-Alive");
  return lines;
}

std::string RequestHead::Text(ULONG bodyLength) const {
  std::string text = "POST " + target + " HTTP/1.0\r\n";
  for (const std::string& line : Lines(bodyLength)) text += line + "\r\n";
  return text + "\r\n";
}

}  // namespace vosmere::http
