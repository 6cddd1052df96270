// Converts between UTF-16 and UTF-8: fast for ASCII, and linear for everything else.
//
// An unpaired surrogate becomes U+FFFD, and so does each maximal ill-formed part of UTF-8.
#pragma once

#include <cstddef>

#include "vosmere/base/types.h"

namespace vosmere::utf8 {

/// The most bytes of UTF-8 for one code unit. A pair of surrogates takes four bytes for two.
inline constexpr std::size_t kMaxBytesPerUnit = 3;

/// Returned when the result does not fit.
inline constexpr std::size_t kNoRoom = static_cast<std::size_t>(-1);

/// Converts `length` code units into at most `capacity` bytes. Returns the number of bytes, or
/// kNoRoom.
std::size_t Encode(const WChar* text, std::size_t length, char* bytes, std::size_t capacity);
/// The number of bytes that Encode writes.
std::size_t EncodedLength(const WChar* text, std::size_t length);

/// Converts `length` bytes into at most `capacity` code units. Returns the number of code units, or
/// kNoRoom. There are never more code units than bytes.
std::size_t Decode(const char* bytes, std::size_t length, WChar* text, std::size_t capacity);
/// The number of code units that Decode writes.
std::size_t DecodedLength(const char* bytes, std::size_t length);

}  // namespace vosmere::utf8
