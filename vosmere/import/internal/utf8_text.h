// Small operations on UTF-8 text and markup.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "vosmere/base/ascii.h"

namespace vosmere::importing {

constexpr bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Appends a character; U+FFFD for what is none.
void AppendUtf8(std::string& text, std::uint32_t character);

/// Whether XML allows the character.
constexpr bool IsXmlCharacter(std::uint32_t c) {
  return c >= 0x20 ? c < 0xD800 || (c >= 0xE000 && c < 0xFFFE) || (c >= 0x10000 && c < 0x110000)
                   : c == '\t' || c == '\n' || c == '\r';
}

/// A set of bytes, for searches that look at every byte once.
class ByteSet {
 public:
  constexpr explicit ByteSet(std::string_view bytes) {
    for (const char byte : bytes) has_[static_cast<unsigned char>(byte)] = true;
  }

  constexpr bool Has(char byte) const { return has_[static_cast<unsigned char>(byte)]; }
  /// The position of the first byte of the set, from `at` on; the size if there is none.
  std::size_t Find(std::string_view text, std::size_t at = 0) const {
    while (at < text.size() && !Has(text[at])) ++at;
    return at;
  }

 private:
  bool has_[256] = {};
};

/// Comparisons without case (ASCII).
inline bool SameNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return ascii::Fold(x) == ascii::Fold(y); });
}
inline bool EndsNoCase(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && SameNoCase(text.substr(text.size() - end.size()), end);
}
/// The position of an ASCII text without case; npos if it is not there.
std::size_t FindNoCase(std::string_view text, std::string_view what);

inline std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && ascii::IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && ascii::IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// The entry of a table whose name is `name` without case, or null.
template <class Row, std::size_t N>
constexpr const Row* FindNoCase(const Row (&rows)[N], std::string_view name) {
  for (const Row& row : rows)
    if (SameNoCase(row.name, name)) return &row;
  return nullptr;
}

}  // namespace vosmere::importing
