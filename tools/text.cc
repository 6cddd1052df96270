// Printable texts, and the names of files.
#include "tools/text.h"

#include <cstdio>

namespace vosmere::tool {
namespace {

bool IsBetween(WChar unit, WChar first, WChar last) {
  return first <= unit && unit <= last;
}

// Control characters, line separators, and characters that change the writing direction.
bool Steers(WChar unit) {
  return unit < 0x20 || IsBetween(unit, 0x7F, 0x9F) || unit == 0x61C ||
         IsBetween(unit, 0x200E, 0x200F) || IsBetween(unit, 0x2028, 0x202E) ||
         IsBetween(unit, 0x2066, 0x2069);
}

void AppendEscape(std::u16string& text, WChar unit) {
  char escape[8];
  const int length = std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(unit));
  text.append(escape, escape + length);
}

}  // namespace

std::filesystem::path PathOf(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

std::string InputName(const std::string& name) {
  return IsStandard(name) ? "standard input" : Printable(name);
}

std::string OutputName(const std::string& name) {
  return IsStandard(name) ? "standard output" : Printable(name);
}

static std::string Printable(WideView text) {
  std::u16string safe;
  for (const WChar unit : text) {
    if (Steers(unit))
      AppendEscape(safe, unit);
    else
      safe += static_cast<char16_t>(unit);
  }
  return ToUtf8(Wide(safe));
}

std::string Printable(const WChar* text) {
  return Printable(WideView(text));
}

std::string Printable(const std::string& utf8) {
  return Printable(Wide(utf8).get());
}

std::string Counted(long long count, std::string_view what) {
  std::string text = std::to_string(count) + ' ';
  for (const char c : what)
    if (c != '*')
      text += c;
    else if (count != 1)
      text += 's';
  return text;
}

}  // namespace vosmere::tool
