// Scanning and widening runs of ASCII, in blocks of 16 bytes with SSE2. Inline, because most runs
// are short.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>

#if defined(__x86_64__)  // which always has SSE2
#include <emmintrin.h>
#endif

#include "vosmere/base/types.h"

namespace vosmere::posix {
namespace tame {

inline bool IsTame(char byte, char stop) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x20 && value < 0x80 && byte != '&' && byte != '<' && byte != stop;
}

#if defined(__x86_64__)

inline __m128i Load(const char* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

/// A bit for each of 16 bytes that is not tame. As signed numbers, control characters and those
/// beyond ASCII are below the blank.
inline unsigned WildBytes(const char* from, __m128i stop) {
  const __m128i bytes = Load(from);
  const __m128i isMarkup = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('&')),
                                        _mm_cmpeq_epi8(bytes, _mm_set1_epi8('<')));
  const __m128i isWild =
      _mm_or_si128(_mm_cmpeq_epi8(bytes, stop), _mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isMarkup, isWild)));
}

inline void WidenBlock(const char* from, WChar* to) {
  const __m128i bytes = Load(from), zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), _mm_unpackhi_epi8(bytes, zero));
}

inline void WidenHalf(const char* from, WChar* to) {
  const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
}

#endif

}  // namespace tame

/// Where a value of a document stops being tame: the first byte from `at` on that is `&`, `<`,
/// `stop`, a control character or beyond ASCII; `end` if there is none.
inline const char* PassTame(const char* at, const char* end, char stop) {
#if defined(__x86_64__)
  const __m128i stops = _mm_set1_epi8(stop);
  for (; end - at >= 16; at += 16)
    if (const unsigned wild = tame::WildBytes(at, stops)) return at + std::countr_zero(wild);
#endif
  while (at != end && tame::IsTame(*at, stop)) ++at;
  return at;
}

/// Converts ASCII to UTF-16. The last block overlaps the one before it.
inline void Widen(const char* ascii, std::size_t length, WChar* text) {
#if defined(__x86_64__)
  if (length >= 16) {
    for (std::size_t i = 0; i + 16 < length; i += 16) tame::WidenBlock(ascii + i, text + i);
    return tame::WidenBlock(ascii + length - 16, text + length - 16);
  }
  if (length >= 8) {
    tame::WidenHalf(ascii, text);
    return tame::WidenHalf(ascii + length - 8, text + length - 8);
  }
#endif
  std::transform(ascii, ascii + length, text, [](char c) { return static_cast<WChar>(c); });
}

}  // namespace vosmere::posix
