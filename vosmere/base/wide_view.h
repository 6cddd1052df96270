// Looking at wide text without owning it.
#pragma once

#include <cstddef>
#include <cstring>

#include "vosmere/base/types.h"

namespace vosmere {

/// Units before the terminating zero; 0 for null.
inline std::size_t WideLength(const WChar* text) {
  if (!text) return 0;
  for (std::size_t i = 0;; i += 4) {  // four at a time: this is half of what a setter costs
    if (!text[i]) return i;
    if (!text[i + 1]) return i + 1;
    if (!text[i + 2]) return i + 2;
    if (!text[i + 3]) return i + 3;
  }
}

/// A run of UTF-16 units that somebody else owns. Not necessarily zero-terminated.
struct WideView {
  const WChar* data = nullptr;
  std::size_t size = 0;

  constexpr WideView() = default;
  constexpr WideView(const WChar* text, std::size_t length) : data(text), size(length) {}
  explicit WideView(const WChar* text) : data(text), size(WideLength(text)) {}

  constexpr bool empty() const { return size == 0; }
  constexpr WChar operator[](std::size_t i) const { return data[i]; }
  constexpr const WChar* begin() const { return data; }
  constexpr const WChar* end() const { return data + size; }

  constexpr WideView First(std::size_t length) const {
    return {data, length < size ? length : size};
  }
  constexpr WideView From(std::size_t position) const {
    return position < size ? WideView{data + position, size - position} : WideView{};
  }

  friend bool operator==(WideView a, WideView b) {
    return a.size == b.size &&
           (a.size == 0 || std::memcmp(a.data, b.data, a.size * sizeof(WChar)) == 0);
  }
};

/// Exact comparison of two zero-terminated texts; null counts as empty.
inline bool SameText(const WChar* a, const WChar* b) {
  return WideView(a) == WideView(b);
}

/// How many units from the start hold whole characters only: up to the first unpaired surrogate.
inline std::size_t WellFormedLength(WideView text) {
  const auto isHigh = [](WChar unit) { return (unit & 0xFC00) == 0xD800; };
  const auto isLow = [](WChar unit) { return (unit & 0xFC00) == 0xDC00; };
  std::size_t i = 0;
  while (i < text.size) {
    if (!isHigh(text[i]) && !isLow(text[i]))
      ++i;
    else if (isHigh(text[i]) && i + 1 < text.size && isLow(text[i + 1]))
      i += 2;
    else
      break;
  }
  return i;
}

constexpr WChar FoldAscii(WChar unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<WChar>(unit + ('a' - 'A')) : unit;
}

/// Comparison with A-Z folded to a-z.
inline bool SameNoCase(WideView a, WideView b) {
  if (a.size != b.size) return false;
  for (std::size_t i = 0; i < a.size; ++i)
    if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
  return true;
}

/// The same of two zero-terminated texts; null counts as empty.
inline bool SameTextNoCase(const WChar* a, const WChar* b) {
  return SameNoCase(WideView(a), WideView(b));
}

}  // namespace vosmere
