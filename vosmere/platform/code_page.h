// Conversions between UTF-16 and 8-bit text, into the caller's memory.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// The platform's own 8-bit text: the ANSI code page on Windows, the locale's elsewhere.
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

}  // namespace vosmere
