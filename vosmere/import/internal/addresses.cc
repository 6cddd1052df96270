// Recognises addresses that run something when they are opened.
#include "vosmere/import/internal/addresses.h"

#include <algorithm>
#include <string>

#include "vosmere/import/internal/references.h"
#include "vosmere/import/internal/utf8_text.h"
#include "vosmere/tree/url_node.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kLongestScheme = 16;

constexpr std::string_view kSchemes[] = {"javascript", "vbscript", "livescript", "jscript",
                                         "data",       "shell",    "hcp"};
constexpr std::string_view kPrograms[] = {".exe", ".com", ".bat", ".cmd",    ".scr", ".pif",
                                          ".vbs", ".js",  ".wsf", ".hta",    ".msi", ".lnk",
                                          ".ps1", ".jar", ".sh",  ".desktop"};

/// The number of UTF-16 code units.
std::size_t UnitsOf(std::string_view utf8) {
  std::size_t units = 0;
  for (const char c : utf8) units += !IsContinuation(c) + (static_cast<unsigned char>(c) >= 0xF0);
  return units;
}

/// The beginning up to the first colon, without what browsers skip; empty if there is no colon.
std::string SchemeOf(std::string_view address) {
  std::string scheme;
  for (const char c : address) {
    if (c == ':') return scheme;
    if (static_cast<unsigned char>(c) > ' ') scheme += ascii::Fold(c);
    if (scheme.size() > kLongestScheme) break;
  }
  return {};
}

}  // namespace

bool RunsSomething(std::string_view address) {
  const std::string scheme = SchemeOf(address);
  if (scheme == "file")
    return std::any_of(std::begin(kPrograms), std::end(kPrograms),
                       [&](std::string_view end) { return EndsNoCase(Trimmed(address), end); });
  return std::find(std::begin(kSchemes), std::end(kSchemes), scheme) != std::end(kSchemes);
}

std::string_view FixAddress(std::string_view raw, std::size_t at, RepairList* repairs) {
  const std::string_view address = Trimmed(raw);
  if (!repairs) return address;
  std::string plain;
  if (address.find('&') != address.npos) plain = WithoutReferences(address);
  const std::string_view opened = plain.empty() ? address : plain;
  if (address.size() != raw.size()) repairs->Add(RepairKind::kBlanks, at, raw, address);
  if (RunsSomething(opened)) repairs->Add(RepairKind::kRuns, at, address, address);
  if (UnitsOf(opened) >= CUrlNode::kTextLimit) repairs->Add(RepairKind::kTooLong, at, address, {});
  return address;
}

}  // namespace vosmere::importing
