// UTF-16 and UTF-8 in blocks of 16 with AVX2.
#pragma once

#include "vosmere/platform/posix/utf8_character.h"

namespace vosmere::utf8 {

/// How far a conversion got: always between two characters.
struct Encoding {
  const WChar* in;
  Byte* out;
};
struct Decoding {
  const Byte* in;
  WChar* out;
};

}  // namespace vosmere::utf8

namespace vosmere::utf8::avx2 {

// Shorter texts are left to the caller as they are.
inline constexpr std::ptrdiff_t kLeastUnits = 33, kLeastBytes = 36;

// Both convert until the input or the room is nearly used up, and leave the rest, which is at
// most two blocks of input or four of output, to the caller.
#if defined(__x86_64__)

/// Set when the program starts, if the processor has AVX2. The results are the same without it.
extern bool isUsed;

Encoding EncodeBlocks(Encoding at, const WChar* end, const Byte* outEnd);
Decoding DecodeBlocks(Decoding at, const Byte* end, const WChar* outEnd);

#else

inline constexpr bool isUsed = false;

inline Encoding EncodeBlocks(Encoding at, const WChar*, const Byte*) {
  return at;
}
inline Decoding DecodeBlocks(Decoding at, const Byte*, const WChar*) {
  return at;
}

#endif

}  // namespace vosmere::utf8::avx2
