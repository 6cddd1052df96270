// Wide texts in tests: `W("text")` wherever the library takes or compares a `const WChar*`.
//
//   node->SetName(W("Åse"));                         // lives until the end of the statement
//   const Wide name = W(u"lone \xD800 unit");        // or as long as the variable
//   EXPECT_EQ(Utf8(node->GetName()), "Åse");         // by content; a failure shows both texts
//   EXPECT_EQ(Utf8(node->GetName()), "(null)");      // null is not the empty text
//   const OwnedBstr text(CSomeTool::GetText());      // frees what the library handed over
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/base/system_string.h"
#include "vosmere/base/types.h"
#include "vosmere/cpp/own.h"

namespace vosmere::test {

/// UTF-8 of `length` units, independent of the library's own conversion. An unpaired surrogate
/// shows as `\uD800`.
inline std::string Utf8(const WChar* text, std::size_t length) {
  std::string utf8;
  for (std::size_t i = 0; i < length; ++i) {
    std::uint32_t c = text[i];
    const bool paired =
        c >> 10 == 0xD800 >> 10 && i + 1 < length && text[i + 1] >> 10 == 0xDC00 >> 10;
    if (paired) c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00u);
    if (c >> 11 == 0xD800 >> 11) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(c));
      utf8 += escape;
      continue;
    }
    constexpr unsigned kLeads[] = {0, 0xC0, 0xE0, 0xF0};
    const int trailing = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    utf8 += static_cast<char>(kLeads[trailing] | c >> 6 * trailing);
    for (int k = trailing; k-- > 0;) utf8 += static_cast<char>(0x80 | (c >> 6 * k & 0x3F));
  }
  return utf8;
}

/// UTF-8 of a zero-terminated text; "(null)" for null.
inline std::string Utf8(const WChar* text) {
  if (!text) return "(null)";
  std::size_t length = 0;
  while (text[length]) ++length;
  return Utf8(text, length);
}

/// A zero-terminated text made of real `WChar`s, which may contain zero units.
class Wide {
 public:
  /// For tables of cases in which null is one.
  Wide(std::nullptr_t) {}
  explicit Wide(std::u16string_view text) : units_(text.begin(), text.end()) {
    units_.push_back(0);
  }
  /// `text` is well-formed UTF-8.
  explicit Wide(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
      const auto lead = static_cast<unsigned char>(text[i++]);
      const int trailing = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
      std::uint32_t c = trailing ? lead & (0x3Fu >> trailing) : lead;
      for (int k = 0; k < trailing && i < text.size(); ++k)
        c = c << 6 | (static_cast<unsigned char>(text[i++]) & 0x3F);
      Add(c);
    }
    units_.push_back(0);
  }

  const WChar* get() const { return units_.empty() ? nullptr : units_.data(); }
  std::size_t size() const { return units_.empty() ? 0 : units_.size() - 1; }
  operator const WChar*() const { return get(); }

 private:
  void Add(std::uint32_t c) {
    if (c >= 0x10000) {
      units_.push_back(static_cast<WChar>(0xD800 + ((c - 0x10000) >> 10)));
      c = 0xDC00 + (c & 0x3FF);
    }
    units_.push_back(static_cast<WChar>(c));
  }

  std::vector<WChar> units_;
};

/// A literal; zero units within it are kept.
template <class Unit, std::size_t N>
Wide W(const Unit (&text)[N]) {
  return Wide(std::basic_string_view<Unit>(text, N - 1));
}
template <class Unit>
Wide W(const std::basic_string<Unit>& text) {
  return Wide(std::basic_string_view<Unit>(text));
}

/// The units as bytes.
inline std::string Utf16(std::u16string_view text, bool bigEndian = false) {
  std::string bytes;
  for (const char16_t unit : text)
    for (const int shift : {bigEndian ? 8 : 0, bigEndian ? 0 : 8})
      bytes += static_cast<char>(unit >> shift);
  return bytes;
}
inline std::string Utf16(const Wide& text, bool bigEndian = false) {
  return Utf16(std::u16string(text.get(), text.get() + text.size()), bigEndian);
}

/// That many "x", for the length limits.
inline Wide Repeated(std::size_t count) {
  return W(std::string(count, 'x'));
}

/// A system string that a test compares.
class OwnedBstr : public SystemString {
 public:
  explicit OwnedBstr(BSTR text) : SystemString(text) {}
  explicit OwnedBstr(const Wide& text) : SystemString(SysAllocStringLen(text.get(), text.size())) {}

  std::size_t size() const { return SysStringLen(get()); }
  /// By the string's own length, so that zero units show.
  std::string utf8() const { return get() ? Utf8(get(), size()) : "(null)"; }
};

}  // namespace vosmere::test
