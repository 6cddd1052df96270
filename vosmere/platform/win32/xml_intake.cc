// Checks a document before the system's parser sees it.
#include "vosmere/platform/win32/xml_intake.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "vosmere/base/ascii.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/win32/entity_guard.h"

namespace vosmere::win32 {
namespace {

constexpr int kMostAttributes = 2000;

/// The position of the document type declaration; the end when there is none before the root
/// element.
std::size_t FindDoctype(const XmlUnits& units) {
  for (std::size_t at = units.MarkLength();;) {
    while (ascii::IsBlank(units[at])) ++at;
    if (units.StartsWith(at, "<?"))
      at = units.Past(at, "?>");
    else if (units.StartsWith(at, "<!--"))
      at = units.Past(at, "-->");
    else
      return units.StartsWith(at, "<!DOCTYPE") ? at : units.size();
  }
}

/// The number of attributes of the tag at `at`. It ends at the next `<` at the latest, which no
/// attribute value may contain.
int CountAttributes(const XmlUnits& units, std::size_t at) {
  int attributes = 0;
  unsigned quote = 0;
  for (; at < units.size() && units[at] != '<'; ++at) {
    const unsigned unit = units[at];
    if (quote)
      quote = unit == quote ? 0 : quote;
    else if (unit == '"' || unit == '\'')
      quote = unit;
    else if (unit == '=')
      ++attributes;
    else if (unit == '>')
      break;
  }
  return attributes;
}

/// Whether the declared encoding uses ASCII bytes for other characters, which would hide markup
/// from these checks.
bool DeclaresShiftingEncoding(std::string_view bytes) {
  if (bytes.substr(0, 5) != "<?xml") return false;
  std::string declaration(bytes.substr(0, std::min(bytes.find("?>"), std::size_t{512})));
  for (char& c : declaration) c = static_cast<char>(ascii::Fold(static_cast<unsigned char>(c)));
  const auto names = [&](const char* part) { return declaration.find(part) != std::string::npos; };
  return names("utf-7") || names("iso-2022") || names("iso2022") || names("cp5022") ||
         names("hz-gb");
}

/// Converts a UTF-16 document to UTF-8, without its byte-order mark.
std::string Utf8(const XmlUnits& units) {
  if (units.size() > std::numeric_limits<int>::max() / 3)
    Refuse(DocumentFault::kExpandsTooMuch,
           "the document is too large for its entities to be expanded");
  std::vector<WChar> wide;
  for (std::size_t i = units.MarkLength(); i < units.size(); ++i)
    wide.push_back(static_cast<WChar>(units[i]));
  std::string utf8(wide.size() * 3, '\0');
  utf8.resize(WideToBytes(kCodePageUtf8, wide.data(), static_cast<int>(wide.size()), utf8.data(),
                          static_cast<int>(utf8.size())));
  return utf8;
}

/// Converts UTF-8 to the bytes of UTF-16 with a byte-order mark.
std::string MarkedUtf16(std::string_view utf8) {
  std::vector<WChar> units(1 + utf8.size(), 0xFEFF);
  const int length = BytesToWide(kCodePageUtf8, utf8.data(), static_cast<int>(utf8.size()),
                                 units.data() + 1, static_cast<int>(utf8.size()));
  return {reinterpret_cast<const char*>(units.data()), (1 + length) * sizeof(WChar)};
}

std::string Expanded(std::string_view text) {
  std::size_t content = 0;
  const std::string expanded = ExpandEntities(text, FindDoctype(XmlUnits(text)), &content);
  const std::string_view whole = expanded.empty() ? text : expanded;
  BoundAttributes(XmlUnits(whole.substr(content)));
  return expanded;
}

}  // namespace

bool HasDoctype(const XmlUnits& document) {
  return FindDoctype(document) < document.size();
}

void BoundAttributes(const XmlUnits& units) {
  for (std::size_t at = 0; (at = units.Past(at, "<")) < units.size();) {
    if (units.StartsWith(at, "!--"))
      at = units.Past(at, "-->");
    else if (units.StartsWith(at, "![CDATA["))
      at = units.Past(at, "]]>");
    else if (units[at] == '?')
      at = units.Past(at, "?>");
    else if (CountAttributes(units, at) > kMostAttributes)
      Refuse(DocumentFault::kExpandsTooMuch, "an element has too many attributes");
  }
}

std::string Admit(std::string_view bytes) {
  const XmlUnits units(bytes);
  const std::size_t start = units.MarkLength();
  const bool isWide = units.width() == 2;
  // A null in the first two code units means UTF-32.
  if (isWide ? units[start] == 0 || units[start + 1] == 0
             : DeclaresShiftingEncoding(bytes.substr(start)))
    Refuse(DocumentFault::kMalformed, "the document's encoding is not supported");
  if (!HasDoctype(units)) {
    BoundAttributes(units);
    return {};
  }
  if (!isWide) return Expanded(bytes.substr(start));
  const std::string expanded = Expanded(Utf8(units));
  return expanded.empty() ? expanded : MarkedUtf16(expanded);
}

void CheckEnd(std::string_view bytes) {
  const XmlUnits units(bytes);
  std::size_t end = 0;
  while (end < units.size() && units[end] != 0) ++end;
  if (end * units.width() == bytes.size()) return;
  const std::string_view before = bytes.substr(0, end * units.width());
  const std::string utf8 = units.width() == 2 ? Utf8(XmlUnits(before)) : std::string(before);
  Refuse(DocumentFault::kMalformed, "the document continues after its end", utf8);
}

}  // namespace vosmere::win32
