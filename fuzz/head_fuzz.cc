// Any text as a server's name, a path, header lines and a length: what is made of it is one head
// without lines that nobody added. The text is split at the bytes 0xFF into these parts.
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/support.h"
#include "vosmere/cpp/text.h"
#include "vosmere/platform/internal/http_message.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

std::vector<std::string> Parts(std::string_view bytes) {
  std::vector<std::string> parts(1);
  for (const char c : bytes)
    if (c == '\xFF')
      parts.emplace_back();
    else
      parts.back() += c;
  parts.resize(std::max<std::size_t>(parts.size(), 3));
  return parts;
}

void CheckAddress(const std::string& name) {
  for (const bool isSecure : {false, true}) {
    http::Address address, again;
    if (!http::ParseAddress(Wide(name), isSecure, &address)) continue;
    Require(address.port <= 65535 && http::IsHeaderLine(address.Text()));
    Require(http::ParseAddress(Wide(address.Text()), isSecure, &again));
    Require(again.Text() == address.Text() && again.port == address.port);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> parts = Parts(View(data, size));
  CheckAddress(parts[0]);
  std::uint64_t length;
  if (http::ParseLength(parts[1], &length)) {
    Require(length <= INT64_MAX);
    std::uint64_t again;
    Require(http::ParseLength(std::to_string(length), &again) && again == length);
  }
  http::RequestHead head;
  head.target = http::RequestTarget(Wide(parts[1]));
  Require(head.target.starts_with('/') &&
          head.target.find_first_of(" \r\n\t") == std::string::npos);
  head.host = "h";
  head.agent = "a";
  for (std::size_t i = 2; i < parts.size(); ++i)
    if (http::IsHeaderLine(parts[i])) head.Set(parts[i]);
  const std::string text = head.Text(7);
  std::size_t lines = 0;
  for (std::size_t at = 0; (at = text.find("\r\n", at)) != text.npos; at += 2) ++lines;
  Require(lines == head.Lines(7).size() + 2 && text.ends_with("\r\n\r\n"));
  return 0;
}
