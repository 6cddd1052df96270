// Small operations on UTF-8 text.
#include "vosmere/import/internal/utf8_text.h"

namespace vosmere::importing {

void AppendUtf8(std::string& text, std::uint32_t character) {
  const std::uint32_t c = character > 0x10FFFF || character >> 11 == 0x1B ? 0xFFFD : character;
  if (c < 0x80) return text.push_back(static_cast<char>(c));
  const int trailing = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
  constexpr unsigned kLeads[] = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(kLeads[trailing] | c >> 6 * trailing);
  for (int k = trailing; k-- > 0;) text += static_cast<char>(0x80 | (c >> 6 * k & 0x3F));
}

std::size_t FindNoCase(std::string_view text, std::string_view what) {
  const auto found = std::search(text.begin(), text.end(), what.begin(), what.end(),
                                 [](char a, char b) { return ascii::Fold(a) == ascii::Fold(b); });
  return found == text.end() ? text.npos : static_cast<std::size_t>(found - text.begin());
}

}  // namespace vosmere::importing
