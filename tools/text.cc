#include "tools/text.h"

#include <cstdio>

#include "vosmere/platform/path.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere::tool {
namespace {

bool IsBetween(WChar unit, WChar first, WChar last) {
  return first <= unit && unit <= last;
}

// Control characters, line separators, and marks that change the direction of writing.
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

SystemString ToWide(const std::string& utf8) {
  BSTR wide = nullptr;
  const bool converted =
      CUnicodeTool::UTF8GetBSTR(&wide, utf8.data(), static_cast<int>(utf8.size()));
  return SystemString(converted ? wide : SysAllocString(Wide(u"")));
}

std::filesystem::path PathOf(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

SystemString LibraryPath(const std::filesystem::path& path) {
  const std::u8string name = path.u8string();
  return SystemString(PathFromName(std::string(name.begin(), name.end()).c_str()));
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
  const SystemString wide = ToWide(utf8);
  return Printable(WideView(wide.get(), SysStringLen(wide.get())));
}

}  // namespace vosmere::tool
