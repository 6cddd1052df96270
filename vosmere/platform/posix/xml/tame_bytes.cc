// Whole blocks as long as there is one. Widen lets the last block overlap the one before it.
#include "vosmere/platform/posix/xml/tame_bytes.h"

#include <algorithm>
#include <bit>

#if defined(__x86_64__)  // which always has SSE2
#include <emmintrin.h>
#endif

namespace vosmere::posix {
namespace {

bool IsTame(char byte, char stop) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x20 && value < 0x80 && byte != '&' && byte != '<' && byte != stop;
}

#if defined(__x86_64__)

__m128i Load(const char* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

/// A bit for each of 16 bytes that is not tame. As signed numbers, control characters and those
/// beyond ASCII are below the blank.
unsigned WildBytes(const char* from, __m128i stop) {
  const __m128i bytes = Load(from);
  const __m128i isMarkup = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('&')),
                                        _mm_cmpeq_epi8(bytes, _mm_set1_epi8('<')));
  const __m128i isWild =
      _mm_or_si128(_mm_cmpeq_epi8(bytes, stop), _mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isMarkup, isWild)));
}

void WidenBlock(const char* from, WChar* to) {
  const __m128i bytes = Load(from), zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), _mm_unpackhi_epi8(bytes, zero));
}

void WidenHalf(const char* from, WChar* to) {
  const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
}

#endif

}  // namespace

const char* PassTame(const char* at, const char* end, char stop) {
#if defined(__x86_64__)
  const __m128i stops = _mm_set1_epi8(stop);
  for (; end - at >= 16; at += 16)
    if (const unsigned wild = WildBytes(at, stops)) return at + std::countr_zero(wild);
#endif
  while (at != end && IsTame(*at, stop)) ++at;
  return at;
}

void Widen(const char* ascii, std::size_t length, WChar* text) {
#if defined(__x86_64__)
  if (length >= 16) {
    for (std::size_t i = 0; i + 16 < length; i += 16) WidenBlock(ascii + i, text + i);
    return WidenBlock(ascii + length - 16, text + length - 16);
  }
  if (length >= 8) {
    WidenHalf(ascii, text);
    return WidenHalf(ascii + length - 8, text + length - 8);
  }
#endif
  std::transform(ascii, ascii + length, text, [](char c) { return static_cast<WChar>(c); });
}

}  // namespace vosmere::posix
