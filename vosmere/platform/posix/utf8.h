// UTF-16 to UTF-8 and back, fast on ASCII and never slow on anything else.
//
// An unpaired surrogate counts as U+FFFD, and so does each maximal ill-formed part of UTF-8.
#pragma once

#include <cstddef>

#include "vosmere/base/types.h"

namespace vosmere::utf8 {

/// The most bytes that one unit takes.
inline constexpr std::size_t kMaxBytesPerUnit = 3;

/// Returned when the result does not fit.
inline constexpr std::size_t kNoRoom = static_cast<std::size_t>(-1);

/// Converts `length` units into at most `capacity` bytes; returns the number of bytes or kNoRoom.
std::size_t Encode(const WChar* text, std::size_t length, char* bytes, std::size_t capacity);
/// The number of bytes that Encode writes.
std::size_t EncodedLength(const WChar* text, std::size_t length);

/// Converts `length` bytes into at most `capacity` units; returns the number of units or kNoRoom. A
/// byte never takes more than one unit.
std::size_t Decode(const char* bytes, std::size_t length, WChar* text, std::size_t capacity);
/// The number of units that Decode writes.
std::size_t DecodedLength(const char* bytes, std::size_t length);

}  // namespace vosmere::utf8
