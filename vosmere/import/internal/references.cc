// Reads the references of markup.
#include "vosmere/import/internal/references.h"

#include <algorithm>
#include <charconv>

#include "vosmere/import/internal/entity_names.h"
#include "vosmere/import/internal/utf8_text.h"
#include "vosmere/import/internal/western.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kLongest = 12;  // "&thetasym;", "&#x10FFFF;"

Reference ReadNumber(std::string_view digits, std::size_t size) {
  const bool isHex = !digits.empty() && (digits[0] == 'x' || digits[0] == 'X');
  const char* const begin = digits.data() + isHex;
  const char* const end = digits.data() + digits.size();
  std::uint32_t number = 0;
  const auto result = std::from_chars(begin, end, number, isHex ? 16 : 10);
  if (begin == end || result.ptr != end) return {};
  const bool isCharacter = result.ec == std::errc() && IsXmlCharacter(number);
  // Only a small x is XML's.
  return {size, isCharacter ? number : 0, isCharacter && (!isHex || digits[0] == 'x')};
}

Reference ReadName(std::string_view name, std::size_t size) {
  constexpr std::string_view kXml[] = {"amp", "apos", "gt", "lt", "quot"};
  const auto* const found =
      std::lower_bound(std::begin(kEntities), std::end(kEntities), name,
                       [](const NamedEntity& row, std::string_view n) { return row.name < n; });
  if (found == std::end(kEntities) || found->name != name) return {size};
  return {size, found->character,
          std::find(std::begin(kXml), std::end(kXml), name) != std::end(kXml)};
}

}  // namespace

Reference ReadReference(std::string_view text) {
  const std::size_t end = text.substr(0, kLongest).find(';');
  if (end == text.npos || end < 2) return {};
  const std::string_view name = text.substr(1, end - 1);
  if (name[0] == '#') return ReadNumber(name.substr(1), end + 1);
  const bool isName = std::all_of(name.begin(), name.end(),
                                  [](char c) { return ascii::IsLetter(c) || ascii::IsDigit(c); });
  return isName && ascii::IsLetter(name[0]) ? ReadName(name, end + 1) : Reference();
}

std::string WithoutReferences(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t next = std::min(text.find('&', at), text.size());
    plain.append(text, at, next - at);
    if (next == text.size()) break;
    const Reference reference = ReadReference(text.substr(next));
    const std::uint32_t c = reference.character;
    if (c != 0)
      AppendUtf8(plain,
                 c >= 0x80 && c < 0xA0 ? WesternCharacter(static_cast<unsigned char>(c)) : c);
    else
      plain.append(text, next, std::max<std::size_t>(reference.size, 1));
    at = next + std::max<std::size_t>(reference.size, 1);
  }
  return plain;
}

}  // namespace vosmere::importing
