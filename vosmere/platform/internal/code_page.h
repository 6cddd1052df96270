// Converts between UTF-16 and 8-bit text, into the caller's memory.
#pragma once

#include <climits>
#include <new>
#include <string>

#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// The platform's own 8-bit encoding. On Windows it is the ANSI code page. On other systems it is
/// that of the locale that the program has set; in the "C" locale, in which every program starts,
/// it is UTF-8.
inline constexpr unsigned kCodePageSystem = 0;
inline constexpr unsigned kCodePageUtf8 = 65001;

/// Any other number is a code page as Windows counts them, for example 932; one that the platform
/// does not have makes the conversions fail.

/// Converts `length` code units into at most `capacity` bytes and returns the number of bytes
/// written. With a capacity of 0 it returns the number needed. A result of 0 also means that the
/// text does not fit, or that its length does not fit an int. No terminating null is written.
///
/// In UTF-8 an unpaired surrogate becomes U+FFFD. In another code page, characters that it lacks
/// become the platform's replacement character.
int WideToBytes(unsigned codePage, const WChar* text, int length, char* bytes, int capacity);

/// The reverse of WideToBytes, with the same rules for the result, in code units. In UTF-8 each
/// maximal ill-formed part becomes one U+FFFD.
int BytesToWide(unsigned codePage, const char* bytes, int length, WChar* text, int capacity);

/// Converts a text to a string. Throws std::bad_alloc when memory runs out, and also when
/// WideToBytes fails.
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
