// One character from UTF-16 to UTF-8, and back.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere::utf8 {

using Byte = unsigned char;

inline constexpr unsigned kReplacement = 0xFFFD;

constexpr bool IsSurrogate(unsigned unit) {
  return (unit & 0xF800) == 0xD800;
}
constexpr bool IsContinuation(unsigned byte) {
  return (byte & 0xC0) == 0x80;
}

inline Byte Continuation(unsigned bits) {
  return static_cast<Byte>(0x80 | (bits & 0x3F));
}

inline bool IsPair(const WChar* in) {
  return IsHighSurrogate(in[0]) & IsLowSurrogate(in[1]);
}

inline int BytesOf(unsigned unit) {
  return 1 + (unit >= 0x80) + (unit >= 0x800);
}

/// Encodes the character at `in` and advances both pointers.
inline void EncodeOne(const WChar*& in, const WChar* end, Byte*& out) {
  unsigned unit = *in++;
  if (unit < 0x80) {
    *out++ = static_cast<Byte>(unit);
    return;
  }
  if (unit < 0x800) {
    *out++ = static_cast<Byte>(0xC0 | unit >> 6);
    *out++ = Continuation(unit);
    return;
  }
  if (IsSurrogate(unit)) {
    if (in != end && IsPair(in - 1)) {
      unit = 0x10000 + ((unit & 0x3FF) << 10 | (*in++ & 0x3FF));
      *out++ = static_cast<Byte>(0xF0 | unit >> 18);
      *out++ = Continuation(unit >> 12);
      *out++ = Continuation(unit >> 6);
      *out++ = Continuation(unit);
      return;
    }
    unit = kReplacement;
  }
  *out++ = static_cast<Byte>(0xE0 | unit >> 12);
  *out++ = Continuation(unit >> 6);
  *out++ = Continuation(unit);
}

/// Length of the maximal ill-formed part at the start: the bytes that could have begun a character,
/// at least one.
inline int IllFormedLength(std::uint32_t bytes) {
  const unsigned lead = bytes & 0xFF, second = bytes >> 8 & 0xFF, third = bytes >> 16 & 0xFF;
  const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (lead < 0xE0 || lead > 0xF4 || second < low || second > high) return 1;
  return lead >= 0xF0 && IsContinuation(third) ? 3 : 2;
}

// The character of two, three or four bytes at the start of `bytes`, whose first byte is in the
// lowest bits; 0 when there is none.

inline unsigned OfTwo(std::uint32_t bytes) {
  if ((bytes & 0xC0E0) != 0x80C0) return 0;
  const unsigned code = (bytes & 0x1F) << 6 | (bytes >> 8 & 0x3F);
  return code >= 0x80 ? code : 0;
}

inline unsigned OfThree(std::uint32_t bytes) {
  if ((bytes & 0xC0C0F0) != 0x8080E0) return 0;
  const unsigned code = (bytes & 0x0F) << 12 | (bytes >> 2 & 0xFC0) | (bytes >> 16 & 0x3F);
  return code >= 0x800 && !IsSurrogate(code) ? code : 0;
}

inline unsigned OfFour(std::uint32_t bytes) {
  if ((bytes & 0xC0C0C0F8) != 0x808080F0) return 0;
  const unsigned code =
      (bytes & 0x07) << 18 | (bytes << 4 & 0x3F000) | (bytes >> 10 & 0xFC0) | (bytes >> 24 & 0x3F);
  return code >= 0x10000 && code <= 0x10FFFF ? code : 0;
}

struct Character {
  unsigned code;
  int length;
};

/// Decodes the character at the start. Bytes beyond the end may be zero, since a zero never
/// continues a character.
inline Character DecodeOne(std::uint32_t bytes) {
  if ((bytes & 0x80) == 0) return {bytes & 0x7F, 1};
  if (const unsigned code = OfTwo(bytes)) return {code, 2};
  if (const unsigned code = OfThree(bytes)) return {code, 3};
  if (const unsigned code = OfFour(bytes)) return {code, 4};
  return {kReplacement, IllFormedLength(bytes)};
}

inline std::uint32_t FourBytes(const Byte* in) {
  return in[0] | in[1] << 8 | in[2] << 16 | std::uint32_t{in[3]} << 24;
}

inline std::uint32_t UpToFourBytes(const Byte* in, const Byte* end) {
  if (end - in >= 4) return FourBytes(in);
  std::uint32_t bytes = 0;
  for (const Byte* last = end; last != in;) bytes = bytes << 8 | *--last;
  return bytes;
}

inline void Put(unsigned code, WChar*& out) {
  if (code < 0x10000) {
    *out++ = static_cast<WChar>(code);
    return;
  }
  out[0] = static_cast<WChar>(0xD7C0 + (code >> 10));
  out[1] = static_cast<WChar>(0xDC00 | (code & 0x3FF));
  out += 2;
}

}  // namespace vosmere::utf8
