// Converting texts for the library and back: UTF-8, UTF-16, and wchar_t where that is UTF-16.
//
//   page.SetName(Wide("Åse"));                          // in; lives until the end of the statement
//   std::string name = ToUtf8(page.GetName());          // out; a copy
//   if (TextView(page.GetName()) == "Åse") ...          // compared without a copy
//
// Each maximal ill-formed part of UTF-8 becomes one U+FFFD, and so does each unpaired surrogate.
// The texts of the library are null-terminated, so a text with a null inside ends there.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

namespace detail {

/// Converts into `units`, which must have room for `length` code units, and returns their number.
/// Not null-terminated. Throws std::bad_alloc.
VOSMERE_API std::size_t Utf8ToWide(const char* utf8, std::size_t length, WChar* units);
/// The number of bytes of the text in UTF-8. Throws std::bad_alloc if it exceeds INT_MAX.
VOSMERE_API std::size_t Utf8Length(const WChar* text, std::size_t length);
/// Converts into `utf8`, which must have room for `size` bytes, at least Utf8Length.
VOSMERE_API void WideToUtf8(const WChar* text, std::size_t length, char* utf8, std::size_t size);
/// Whether a null-terminated text equals the result of Utf8ToWide for these bytes. Does not
/// allocate.
VOSMERE_API bool EqualsUtf8(const WChar* text, const char* utf8, std::size_t length);

/// Calls `set`, which calls setters, and throws std::bad_alloc if one of them kept its old text
/// because memory ran out. Setters do not report that themselves.
template <class Set>
void SetOrThrow(Set set) {
  const unsigned long before = LostTexts();
  set();
  if (LostTexts() != before) detail::ThrowNoMemory();
}

}  // namespace detail

/// A text with code units of this type: a literal, a pointer, a standard string or a view of one.
template <class Text, class Unit>
concept TextOf = std::convertible_to<const Text&, std::basic_string_view<Unit>> &&
    !std::same_as<Text, std::nullptr_t>;
template <class Unit>
concept Utf16Unit = sizeof(Unit) == sizeof(WChar);
template <class Text>
concept Utf8Text = TextOf<Text, char> || TextOf<Text, char8_t>;
template <class Text>
concept Utf16Text = TextOf<Text, char16_t> ||
    (sizeof(wchar_t) == sizeof(WChar) && TextOf<Text, wchar_t>);
/// Every type of text that is accepted from a program.
template <class Text>
concept AnyText = Utf8Text<Text> || Utf16Text<Text>;

namespace detail {

template <class Text>
bool IsNull(const Text& text) {
  if constexpr (std::is_pointer_v<Text>)
    return !text;
  else
    return false;
}

/// The text as a view, which is empty for a null pointer.
template <class Unit, class Text>
std::basic_string_view<Unit> View(const Text& text) {
  if (IsNull(text)) return {};
  return text;
}

template <Utf8Text Text>
std::string_view ViewUtf8(const Text& text) {
  if constexpr (TextOf<Text, char>) {
    return View<char>(text);
  } else {
    const auto view = View<char8_t>(text);
    return {reinterpret_cast<const char*>(view.data()), view.size()};
  }
}

template <Utf16Text Text>
auto ViewUtf16(const Text& text) {
  if constexpr (TextOf<Text, char16_t>)
    return View<char16_t>(text);
  else
    return View<wchar_t>(text);
}

template <class Unit>
void CopyUnits(std::basic_string_view<Unit> utf16, WChar* units) {
  if (!utf16.empty()) std::memcpy(units, utf16.data(), utf16.size() * sizeof(WChar));
}

}  // namespace detail

/// A copy in UTF-8; empty for null. Throws std::bad_alloc.
inline std::string ToUtf8(WideView text) {
  std::string utf8(detail::Utf8Length(text.data, text.size), '\0');
  detail::WideToUtf8(text.data, text.size, utf8.data(), utf8.size());
  return utf8;
}
inline std::string ToUtf8(const WChar* text) {
  return ToUtf8(WideView(text));
}

/// A copy in UTF-16; empty for null. Throws std::bad_alloc.
inline std::u16string ToUtf16(const WChar* text) {
  const WideView view(text);
  return {view.begin(), view.end()};
}
/// The same in wchar_t, where that is UTF-16.
template <Utf16Unit Unit = wchar_t>
std::basic_string<Unit> ToWString(const WChar* text) {
  const WideView view(text);
  return {view.begin(), view.end()};
}

/// A view of a text of the library. Valid as long as the text; that of an item is valid until it is
/// set again. Null is treated as empty; IsNull tells them apart. Comparisons do not allocate and
/// are case-sensitive.
class TextView {
 public:
  TextView(const WChar* text) : text_(text) {}

  const WChar* get() const { return text_; }
  bool IsNull() const { return !text_; }
  bool empty() const { return !text_ || !*text_; }

  /// A copy in UTF-8. Throws std::bad_alloc.
  operator std::string() const { return ToUtf8(text_); }

  friend bool operator==(TextView a, TextView b) { return SameText(a.text_, b.text_); }
  template <AnyText Text>
  friend bool operator==(TextView a, const Text& b) {
    if constexpr (Utf8Text<Text>)
      return a.Equals(detail::ViewUtf8(b));
    else
      return a.Equals(detail::ViewUtf16(b));
  }

  // Each of these may throw std::bad_alloc.
  friend std::string operator+(std::string_view a, TextView b) {
    return std::string(a) + ToUtf8(b.text_);
  }
  friend std::string operator+(TextView a, std::string_view b) {
    return ToUtf8(a.text_) + std::string(b);
  }
  friend std::ostream& operator<<(std::ostream& out, TextView text) {
    return out << ToUtf8(text.text_);
  }

 private:
  bool Equals(std::string_view utf8) const {
    const WChar* text = text_;
    std::size_t i = 0;
    const auto byte = [&] { return static_cast<unsigned char>(utf8[i]); };
    while (text && i < utf8.size() && *text && *text == byte() && byte() < 0x80) ++text, ++i;
    if (i == utf8.size()) return !text || !*text;
    if (!text || byte() < 0x80) return false;
    return detail::EqualsUtf8(text, utf8.data() + i, utf8.size() - i);
  }
  template <class Unit>
  bool Equals(std::basic_string_view<Unit> utf16) const {
    const WideView view(text_);
    return view.size == utf16.size() &&
           (view.empty() || std::memcmp(view.data, utf16.data(), view.size * sizeof(WChar)) == 0);
  }

  const WChar* text_;
};

/// A text argument for the library: converts any text to null-terminated UTF-16. Meant as a
/// temporary in a call; setters copy the text. Short texts are converted without allocating.
///
///   Wide("UTF-8")   Wide(u"UTF-16")   Wide(std::string(...))   Wide(page.GetName())
class Wide {
 public:
  /// Null. The setter's header says what it means.
  Wide(std::nullptr_t) : text_(nullptr) {}
  /// A text of the library, which is not copied and must outlive this object.
  Wide(const WChar* text) : text_(text) {}
  Wide(TextView text) : text_(text.get()) {}
  /// A converted copy; null for a null pointer. Throws std::bad_alloc.
  template <AnyText Text>
  Wide(const Text& text) : text_(nullptr) {
    if (detail::IsNull(text)) return;
    if constexpr (Utf8Text<Text>) {
      const std::string_view utf8 = detail::ViewUtf8(text);
      WChar* const units = Begin(utf8.size());
      units[detail::Utf8ToWide(utf8.data(), utf8.size(), units)] = 0;
    } else {
      const auto utf16 = detail::ViewUtf16(text);
      WChar* const units = Begin(utf16.size());
      detail::CopyUnits(utf16, units);
      units[utf16.size()] = 0;
    }
  }
  Wide(const Wide&) = delete;
  Wide& operator=(const Wide&) = delete;

  operator const WChar*() const { return text_; }
  const WChar* get() const { return text_; }

 private:
  static constexpr std::size_t kShort = 128;

  /// Memory for a text of at most `length` code units and the terminating null.
  WChar* Begin(std::size_t length) {
    if (length >= kShort) long_ = std::make_unique_for_overwrite<WChar[]>(length + 1);
    WChar* const units = long_ ? long_.get() : short_;
    text_ = units;
    return units;
  }

  const WChar* text_;
  WChar short_[kShort];
  std::unique_ptr<WChar[]> long_;
};

/// ToUtf8 for a UTF-16 text of a program. Throws std::bad_alloc.
template <Utf16Text Text>
std::string ToUtf8(const Text& text) {
  const auto utf16 = detail::ViewUtf16(text);
  const auto units = std::make_unique_for_overwrite<WChar[]>(utf16.size());
  detail::CopyUnits(utf16, units.get());
  return ToUtf8(WideView(units.get(), utf16.size()));
}

}  // namespace vosmere
