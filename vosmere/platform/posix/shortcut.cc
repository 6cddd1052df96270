// Parses Internet shortcut files.
#include "vosmere/platform/posix/shortcut.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <optional>
#include <string_view>

#include "vosmere/base/ascii.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/posix/text_file.h"

namespace vosmere {
namespace {

bool SameNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return ascii::Fold(x) == ascii::Fold(y);
  });
}

std::string_view Trimmed(std::string_view text) {
  constexpr char kBlanks[] = " \t";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

/// Removes the first line that is not empty from the front and returns it without blanks around it.
/// A null ends a line too.
std::string_view TakeLine(std::string_view& text) {
  constexpr std::string_view kEnds("\r\n\0", 3);
  text.remove_prefix(std::min(text.find_first_not_of(kEnds), text.size()));
  const std::string_view line = text.substr(0, text.find_first_of(kEnds));
  text.remove_prefix(line.size());
  return Trimmed(line);
}

/// The first value with that name in a section, without quotes around it; nothing when there is
/// none.
std::optional<std::string_view> Value(std::string_view text, std::string_view section,
                                      std::string_view name) {
  bool inside = false;
  while (!text.empty()) {
    const std::string_view line = TakeLine(text);
    const std::size_t equals = line.find('=');
    if (line.starts_with('[')) {
      inside = SameNoCase(line.substr(1, line.find(']') - 1), section);
    } else if (inside && equals != line.npos && SameNoCase(Trimmed(line.substr(0, equals)), name)) {
      std::string_view value = Trimmed(line.substr(equals + 1));
      const bool quoted = value.size() > 1 && value.front() == value.back() &&
                          (value.front() == '"' || value.front() == '\'');
      return quoted ? value.substr(1, value.size() - 2) : value;
    }
  }
  return {};
}

/// Converts a line from UTF-7 to UTF-16; nothing when it is ill-formed. Encoded characters can end
/// the line, too.
std::optional<std::u16string> FromUtf7(std::string_view text) {
  std::string units(text.size() * 2, 0);  // a byte gives at most one code unit
  const iconv_t converter = iconv_open("UTF-16LE", "UTF-7");
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    if (errno == ENOMEM) throw std::bad_alloc();
    return {};
  }
  char* in = const_cast<char*>(text.data());
  char* out = units.data();
  std::size_t left = text.size(), room = units.size();
  const bool converted = iconv(converter, &in, &left, &out, &room) != static_cast<std::size_t>(-1);
  iconv_close(converter);
  if (!converted) return {};
  units.resize(units.size() - room);
  // Through UTF-8, which replaces unpaired surrogates.
  const std::u16string line = WideOf(TextOf("\xFF\xFE" + units));
  return line.substr(0, line.find_first_of(std::u16string_view(u"\r\n\0", 3)));
}

}  // namespace

std::u16string ShortcutAddressIn(std::string bytes) {
  const std::string text = TextOf(std::move(bytes));
  if (const auto shadow = Value(text, "InternetShortcut.W", "URL"))
    if (auto address = FromUtf7(*shadow); address && !address->empty()) return *address;
  const auto address = Value(text, "InternetShortcut", "URL");
  return WideOf(std::string(address.value_or("")));
}

}  // namespace vosmere
