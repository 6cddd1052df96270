// Reading and comparing wide text without owning it.
#pragma once

#include <cstddef>
#include <cstring>

#include "vosmere/base/ascii.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The number of code units before the terminating null; 0 for a null pointer.
inline std::size_t WideLength(const WChar* text) {
  if (!text) return 0;
  for (std::size_t i = 0;; i += 4) {  // unrolled: this is half of what a setter costs
    if (!text[i]) return i;
    if (!text[i + 1]) return i + 1;
    if (!text[i + 2]) return i + 2;
    if (!text[i + 3]) return i + 3;
  }
}

/// A range of UTF-16 code units that is owned elsewhere and must outlive the view. It need not be
/// null-terminated.
struct WideView {
  const WChar* data = nullptr;
  std::size_t size = 0;

  constexpr WideView() = default;
  constexpr WideView(const WChar* text, std::size_t length) : data(text), size(length) {}
  /// A null-terminated text without its terminator; a null pointer gives an empty view.
  explicit WideView(const WChar* text) : data(text), size(WideLength(text)) {}

  constexpr bool empty() const { return size == 0; }
  constexpr WChar operator[](std::size_t i) const { return data[i]; }
  constexpr const WChar* begin() const { return data; }
  constexpr const WChar* end() const { return data + size; }

  /// The first `length` code units, or all if there are fewer.
  constexpr WideView First(std::size_t length) const {
    return {data, length < size ? length : size};
  }
  /// What follows the first `position` code units; empty if there are fewer.
  constexpr WideView From(std::size_t position) const {
    return position < size ? WideView{data + position, size - position} : WideView{};
  }

  /// Compares code unit by code unit.
  friend bool operator==(WideView a, WideView b) {
    return a.size == b.size &&
           (a.size == 0 || std::memcmp(a.data, b.data, a.size * sizeof(WChar)) == 0);
  }
};

/// Compares two null-terminated texts code unit by code unit; null is treated as the empty text.
inline bool SameText(const WChar* a, const WChar* b) {
  return WideView(a) == WideView(b);
}

/// The two halves of a character beyond U+FFFF.
constexpr bool IsHighSurrogate(WChar unit) {
  return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(WChar unit) {
  return (unit & 0xFC00) == 0xDC00;
}

/// The beginning of a text, at most `length` code units, without half a character at its end.
constexpr WideView FirstWhole(WideView text, std::size_t length) {
  const bool cutsPair = length > 0 && length < text.size && IsHighSurrogate(text[length - 1]);
  return text.First(cutsPair ? length - 1 : length);
}

/// The length, in code units, of the longest well-formed beginning: the position of the first
/// unpaired surrogate, or the whole size.
inline std::size_t WellFormedLength(WideView text) {
  std::size_t i = 0;
  while (i < text.size) {
    if (!IsHighSurrogate(text[i]) && !IsLowSurrogate(text[i]))
      ++i;
    else if (IsHighSurrogate(text[i]) && i + 1 < text.size && IsLowSurrogate(text[i + 1]))
      i += 2;
    else
      break;
  }
  return i;
}

/// Case-insensitive comparison (ASCII): A to Z equal a to z, nothing else is folded.
inline bool SameNoCase(WideView a, WideView b) {
  if (a.size != b.size) return false;
  for (std::size_t i = 0; i < a.size; ++i)
    if (ascii::Fold(a[i]) != ascii::Fold(b[i])) return false;
  return true;
}

/// SameNoCase for two null-terminated texts; null is treated as the empty text.
inline bool SameTextNoCase(const WChar* a, const WChar* b) {
  return SameNoCase(WideView(a), WideView(b));
}

}  // namespace vosmere
