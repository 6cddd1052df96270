// UTF-16 and UTF-8, in blocks of 16 code units with AVX2 or SSE2 where the processor has them.
#include "vosmere/platform/posix/utf8.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <iterator>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

#include "vosmere/platform/posix/utf8_avx2.h"
#include "vosmere/platform/posix/utf8_character.h"

namespace vosmere::utf8 {
namespace {

/// Code units that are processed together.
constexpr std::ptrdiff_t kBlock = 16;

// CopyAscii copies the ASCII characters at the start of a block, and returns a bit for each code
// unit of the block that is not ASCII. It reads and writes the whole block.
#if defined(__x86_64__)  // which always has SSE2

inline unsigned CopyAscii(const WChar* from, Byte* to) {
  const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 8));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(first, second));
  const __m128i carry = _mm_set1_epi16(0x7F80);  // moves 0x80 and above to the sign bit
  return _mm_movemask_epi8(
      _mm_packs_epi16(_mm_adds_epu16(first, carry), _mm_adds_epu16(second, carry)));
}

inline unsigned CopyAscii(const Byte* from, WChar* to) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 8), _mm_unpackhi_epi8(bytes, zero));
  return _mm_movemask_epi8(bytes);
}

#else

template <class From, class To>
unsigned CopyAscii(const From* from, To* to) {
  unsigned others = 0;
  for (int i = 0; i < kBlock; ++i) {
    to[i] = static_cast<To>(from[i]);
    others |= unsigned{from[i] >= 0x80} << i;
  }
  return others;
}

#endif

/// Copies the ASCII characters at the start of a block. True when the whole block was ASCII.
template <class From, class To>
inline bool TakeAscii(const From*& in, To*& out) {
  const unsigned others = CopyAscii(in, out);
  const int count = others ? std::countr_zero(others) : kBlock;
  in += count;
  out += count;
  return others == 0;
}

// TakeEight encodes eight code units, or seven when a pair begins with the eighth. It returns false
// and does nothing when one of them is an unpaired surrogate. It may write three bytes for each
// code unit, and one byte beyond them unless `kTight`, which is slower.
#if defined(__x86_64__)  // which always has SSE2

inline __m128i All(int value) {
  return _mm_set1_epi16(static_cast<short>(value));
}
inline __m128i And(__m128i a, int mask) {
  return _mm_and_si128(a, All(mask));
}
inline __m128i Or(__m128i a, __m128i b, int bits) {
  return _mm_or_si128(_mm_or_si128(a, b), All(bits));
}
inline __m128i Select(__m128i mask, __m128i yes, __m128i no) {
  return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

/// The code unit before each code unit; 0 before the first.
inline __m128i Before(__m128i units) {
  return _mm_slli_si128(units, 2);
}

// In every lane, the first two bytes of the UTF-8 form of its code unit. A pair has two bytes from
// each half.
inline __m128i StartOfTwo(__m128i units) {
  return Or(_mm_srli_epi16(units, 6), And(_mm_slli_epi16(units, 8), 0x3F00), 0x80C0);
}
inline __m128i StartOfThree(__m128i units) {
  return Or(_mm_srli_epi16(units, 12), And(_mm_slli_epi16(units, 2), 0x3F00), 0x80E0);
}
inline __m128i HalfOfHigh(__m128i units) {
  const __m128i code = _mm_add_epi16(And(units, 0x3FF), All(0x40));  // the code point >> 10
  return Or(_mm_srli_epi16(code, 8), And(_mm_slli_epi16(code, 6), 0x3F00), 0x80F0);
}
inline __m128i HalfOfLow(__m128i units) {
  const __m128i third = _mm_or_si128(And(_mm_srli_epi16(units, 6), 0x0F),
                                     And(_mm_slli_epi16(Before(units), 4), 0x30));
  return Or(third, And(_mm_slli_epi16(units, 8), 0x3F00), 0x8080);
}

/// Writes four characters at their positions: the first at `begin`, each of the others where the
/// previous one ends, which the bytes of `ends` give. `lastSize` bytes of the last one are written.
inline void StoreFour(__m128i characters, std::size_t begin, std::uint64_t ends, Byte* out,
                      int lastSize) {
  _mm_storeu_si32(out + begin, characters);
  _mm_storeu_si32(out + (ends & 0xFF), _mm_srli_si128(characters, 4));
  _mm_storeu_si32(out + (ends >> 8 & 0xFF), _mm_srli_si128(characters, 8));
  const int last = _mm_cvtsi128_si32(_mm_srli_si128(characters, 12));
  std::memcpy(out + (ends >> 16 & 0xFF), &last, lastSize);
}

template <bool kTight>
inline bool TakeEight(const WChar*& in, Byte*& out) {
  const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
  const __m128i zero = _mm_setzero_si128();
  const __m128i isOne = _mm_cmpeq_epi16(_mm_subs_epu16(units, All(0x7F)), zero);
  if (_mm_movemask_epi8(isOne) == 0xFFFF) {  // short texts are often ASCII
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(units, zero));
    in += 8;
    out += 8;
    return true;
  }
  const __m128i isUpToTwo = _mm_cmpeq_epi16(_mm_subs_epu16(units, All(0x7FF)), zero);
  __m128i start = Select(isOne, units, Select(isUpToTwo, StartOfTwo(units), StartOfThree(units)));
  __m128i lengths = _mm_add_epi16(All(3), _mm_add_epi16(isOne, isUpToTwo));

  int left = 0;
  const __m128i isSurrogate = _mm_cmpeq_epi16(And(units, 0xF800), All(0xD800));
  if (_mm_movemask_epi8(isSurrogate)) {  // each half of a pair gives two bytes
    const __m128i isHigh = _mm_cmpeq_epi16(And(units, 0xFC00), All(0xD800));
    const __m128i isLow = _mm_andnot_si128(isHigh, isSurrogate);
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(Before(isHigh), isLow)) != 0xFFFF) return false;
    start = Select(isHigh, HalfOfHigh(units), Select(isLow, HalfOfLow(units), start));
    lengths = _mm_add_epi16(lengths, isSurrogate);
    left = _mm_movemask_epi8(isHigh) >> 15;
  }

  const __m128i third = _mm_or_si128(And(units, 0x3F), All(0x80));
  const std::uint64_t ends =  // the running sums of the lengths
      0x0101010101010101u *
      static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_packs_epi16(lengths, zero)));
  StoreFour(_mm_unpacklo_epi16(start, third), 0, ends, out, 4);
  StoreFour(_mm_unpackhi_epi16(start, third), ends >> 24 & 0xFF, ends >> 32, out, kTight ? 3 : 4);
  in += 8 - left;
  out += ends >> (56 - 8 * left) & 0xFF;
  return true;
}

#else

template <bool kTight>
inline bool TakeEight(const WChar*& in, Byte*& out) {
  for (int i = 0; i < 8; ++i)
    if (IsSurrogate(in[i])) return false;
  for (int i = 0; i < 8; ++i) EncodeOne(in, in + 1, out);
  return true;
}

#endif

/// Decodes characters of three bytes, then of two bytes, that begin before `limit`. They are the
/// letters of most scripts and usually come in runs.
inline void TakeAlike(const Byte*& in, const Byte* limit, WChar*& out) {
  unsigned code;
  for (; in < limit && (code = OfThree(FourBytes(in))); in += 3) Put(code, out);
  for (; in < limit && (code = OfTwo(FourBytes(in))); in += 2) Put(code, out);
}

/// How much input can be processed without checking either end: no code unit of it gives more than
/// `most` units of output, and after it a whole block can still be read and written.
inline std::ptrdiff_t SafeLength(std::ptrdiff_t length, std::ptrdiff_t capacity, int most) {
  return std::min(length, capacity / most) - kBlock;
}

/// Decodes until the input or the output ends. The first loop works in blocks without checks, the
/// second finishes with checks.
Decoding DecodeWhileRoom(const Byte* in, const Byte* end, WChar* out, WChar* outEnd) {
  if (end - in >= avx2::kLeastBytes && avx2::isUsed) {
    const Decoding reached = avx2::DecodeBlocks({in, out}, end, outEnd);
    in = reached.in;
    out = reached.out;
  }
  for (std::ptrdiff_t safe; (safe = SafeLength(end - in, outEnd - out, 1)) > 0;) {
    for (const Byte* const limit = in + safe; in < limit;) {
      if (*in < 0x80 && TakeAscii(in, out)) continue;
      while (in < limit && (in[0] >= 0x80 || in[1] >= 0x80)) {
        TakeAlike(in, limit, out);
        const Character character = DecodeOne(FourBytes(in));
        in += character.length;
        Put(character.code, out);
      }
    }
  }
  for (;;) {
    while (in != end && out != outEnd && *in < 0x80) *out++ = *in++;
    if (end - in >= 4) TakeAlike(in, in + std::min(end - in - 3, outEnd - out), out);
    if (in == end || out == outEnd) break;
    const Character character = DecodeOne(UpToFourBytes(in, end));
    if (character.code >= 0x10000 && outEnd - out < 2) break;
    in += character.length;
    Put(character.code, out);
  }
  return {in, out};
}

}  // namespace

std::size_t Encode(const WChar* text, std::size_t length, char* bytes, std::size_t capacity) {
  const WChar* in = text;
  const WChar* const end = in + length;
  Byte* const begin = reinterpret_cast<Byte*>(bytes);
  Byte* out = begin;
  Byte* const outEnd = out + capacity;

  if (end - in >= avx2::kLeastUnits && avx2::isUsed) {
    const Encoding reached = avx2::EncodeBlocks({in, out}, end, outEnd);
    in = reached.in;
    out = reached.out;
  }
  for (std::ptrdiff_t safe; (safe = SafeLength(end - in, outEnd - out, 3)) > 0;) {
    for (const WChar* const limit = in + safe; in < limit;) {
      if (TakeAscii(in, out)) continue;
      EncodeOne(in, end, out);
      while (in < limit && (in[0] >= 0x80 || in[1] >= 0x80))
        if (!TakeEight<false>(in, out))
          for (const WChar* const next = in + 8; in < next;) EncodeOne(in, end, out);
    }
  }
  while (end - in >= 8 && outEnd - out >= 24 && TakeEight<true>(in, out)) {
  }
  const bool roomy = outEnd - out >= 3 * (end - in);
  while (in != end) {
    if (!roomy && outEnd - out < (end - in > 1 && IsPair(in) ? 4 : BytesOf(*in))) return kNoRoom;
    EncodeOne(in, end, out);
  }
  return out - begin;
}

std::size_t EncodedLength(const WChar* text, std::size_t length) {
  constexpr std::size_t kPart = 0x4000;  // sums over it fit 16 bits, so eight are added at once
  std::size_t bytes = length;
  for (std::size_t begin = 0; begin < length; begin += kPart) {
    const std::size_t end = std::min(begin + kPart, length);
    WChar more = 0, pairs = 0;
    for (std::size_t i = begin; i < end; ++i) more += (text[i] >= 0x80) + (text[i] >= 0x800);
    for (std::size_t i = begin; i < std::min(end, length - 1); ++i) pairs += IsPair(text + i);
    bytes += more - 2 * pairs;  // a pair takes four bytes, not three for each unit
  }
  return bytes;
}

std::size_t Decode(const char* bytes, std::size_t length, WChar* text, std::size_t capacity) {
  const Byte* const begin = reinterpret_cast<const Byte*>(bytes);
  const Byte* const end = begin + length;
  const Decoding reached = DecodeWhileRoom(begin, end, text, text + capacity);
  return reached.in == end ? reached.out - text : kNoRoom;
}

std::size_t DecodedLength(const char* bytes, std::size_t length) {
  const Byte* in = reinterpret_cast<const Byte*>(bytes);
  const Byte* const end = in + length;
  std::size_t units = 0;
  while (in != end) {
    WChar part[512];
    const Decoding reached = DecodeWhileRoom(in, end, part, std::end(part));
    in = reached.in;
    units += reached.out - part;
  }
  return units;
}

}  // namespace vosmere::utf8
