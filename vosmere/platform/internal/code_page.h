// Conversions between UTF-16 and 8-bit text, into the caller's memory.
#pragma once

#include <climits>
#include <new>
#include <string>

#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// The platform's own 8-bit text: the ANSI code page on Windows; elsewhere that of the locale which
/// the program has set, and UTF-8 in the "C" locale, in which every program starts.
inline constexpr unsigned kCodePageSystem = 0;
inline constexpr unsigned kCodePageUtf8 = 65001;

/// Converts `length` units into `capacity` bytes and returns the number of bytes written; with a
/// capacity of 0 it returns the number needed. 0 also means that the result does not fit, or that
/// its length would not fit an int. Writes no terminator. In UTF-8 an unpaired surrogate gives
/// U+FFFD; in another code page what it cannot represent gives the platform's replacement.
int WideToBytes(unsigned codePage, const WChar* text, int length, char* bytes, int capacity);

/// The reverse, with the same rule for the result, in units. Ill-formed UTF-8 gives one U+FFFD for
/// each maximal ill-formed part.
int BytesToWide(unsigned codePage, const char* bytes, int length, WChar* text, int capacity);

/// A text as bytes, in memory of their own. Throws std::bad_alloc, also where WideToBytes fails.
inline std::string BytesOf(unsigned codePage, WideView text) {
  if (text.empty()) return {};
  if (text.size > INT_MAX) throw std::bad_alloc();
  const int units = static_cast<int>(text.size);
  const int size = WideToBytes(codePage, text.data, units, nullptr, 0);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  if (WideToBytes(codePage, text.data, units, bytes.data(), size) != size || size == 0)
    throw std::bad_alloc();
  return bytes;
}

}  // namespace vosmere
