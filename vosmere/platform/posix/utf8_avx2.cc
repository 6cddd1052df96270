// Computes the bytes, or the code units, of a whole block in fixed lanes, and then shuffles those
// that are meant together. Each block begins between two characters.
#include "vosmere/platform/posix/utf8_avx2.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <bit>

namespace vosmere::utf8::avx2 {

bool isUsed = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");

namespace {

#define VOSMERE_AVX2 [[gnu::target("avx2,popcnt")]]
#define VOSMERE_STEP [[gnu::target("avx2,popcnt"), gnu::always_inline]]

constexpr std::ptrdiff_t kBlock = 16;
constexpr std::ptrdiff_t kRun = 64;   // of ASCII at the start of a text
constexpr std::ptrdiff_t kSlow = 64;  // bytes that are decoded one by one after a fault

using Shuffle = std::array<Byte, 16>;

/// For each set of the lanes of a vector, the shuffle that moves the bytes that they keep to the
/// front: `Keeps(set, lane)` bytes of each.
template <int kLanes, class Keeps>
constexpr std::array<Shuffle, 256> Shuffles(Keeps keeps) {
  constexpr int kSize = 16 / kLanes;
  std::array<Shuffle, 256> shuffles = {};
  for (int set = 0; set < 256; ++set) {
    int at = 0;
    for (int lane = 0; lane < kLanes; ++lane)
      for (int byte = 0; byte < keeps(set, lane); ++byte)
        shuffles[set][at++] = static_cast<Byte>(lane * kSize + byte);
  }
  return shuffles;
}

/// Eight lanes of up to two bytes; a bit says that the lane has only one.
alignas(64) constexpr auto kUpToTwo = Shuffles<8>([](int set, int lane) {
  return 2 - (set >> lane & 1);
});
/// Four lanes of up to three bytes; a bit of either half says that the lane has one less.
alignas(64) constexpr auto kUpToThree = Shuffles<4>([](int set, int lane) {
  return 3 - (set >> lane & 1) - (set >> (lane + 4) & 1);
});
/// Eight lanes of one code unit; a bit says that the lane is kept.
alignas(64) constexpr auto kUnits = Shuffles<8>([](int set, int lane) {
  return 2 * (set >> lane & 1);
});

VOSMERE_STEP inline __m256i All(int value) {
  return _mm256_set1_epi16(static_cast<short>(value));
}
VOSMERE_STEP inline __m256i And(__m256i a, int mask) {
  return _mm256_and_si256(a, All(mask));
}
VOSMERE_STEP inline __m256i Or(__m256i a, __m256i b, int bits) {
  return _mm256_or_si256(_mm256_or_si256(a, b), All(bits));
}
VOSMERE_STEP inline __m256i IsUpTo(__m256i units, __m256i most) {
  return _mm256_cmpeq_epi16(_mm256_max_epu16(units, most), most);
}
VOSMERE_STEP inline __m128i Low(__m256i lanes) {
  return _mm256_castsi256_si128(lanes);
}
VOSMERE_STEP inline __m128i High(__m256i lanes) {
  return _mm256_extracti128_si256(lanes, 1);
}
template <class From>
VOSMERE_STEP inline __m256i Load(const From* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}
/// A bit for each lane that is all ones.
VOSMERE_STEP inline unsigned Bits(__m256i lanes) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(Low(lanes), High(lanes))));
}

/// Stores 16 bytes, shuffled.
template <class To>
VOSMERE_STEP inline void Store(To* to, __m128i bytes, const Shuffle& shuffle) {
  const __m128i order = _mm_load_si128(reinterpret_cast<const __m128i*>(shuffle.data()));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(bytes, order));
}

// In every lane, the first two bytes of the UTF-8 form of its code unit.
VOSMERE_STEP inline __m256i StartOfTwo(__m256i units) {
  return Or(_mm256_srli_epi16(units, 6), And(_mm256_slli_epi16(units, 8), 0x3F00), 0x80C0);
}
VOSMERE_STEP inline __m256i StartOfThree(__m256i units) {
  return Or(_mm256_srli_epi16(units, 12), And(_mm256_slli_epi16(units, 2), 0x3F00), 0x80E0);
}

// A pair has two bytes from each half.
VOSMERE_STEP inline __m256i HalfOfHigh(__m256i units) {
  const __m256i code = _mm256_add_epi16(And(units, 0x3FF), All(0x40));  // the code point >> 10
  return Or(_mm256_srli_epi16(code, 8), And(_mm256_slli_epi16(code, 6), 0x3F00), 0x80F0);
}
VOSMERE_STEP inline __m256i HalfOfLow(__m256i units) {
  const __m256i before =  // the code unit before each
      _mm256_alignr_epi8(units, _mm256_permute2x128_si256(units, units, 0x08), 14);
  const __m256i third = _mm256_or_si256(And(_mm256_srli_epi16(units, 6), 0x0F),
                                        And(_mm256_slli_epi16(before, 4), 0x30));
  return Or(third, And(_mm256_slli_epi16(units, 8), 0x3F00), 0x8080);
}

VOSMERE_STEP inline void StoreUpToTwo(__m256i units, __m256i isOne, Byte*& out) {
  const __m256i bytes = _mm256_blendv_epi8(StartOfTwo(units), units, isOne);
  const unsigned one = Bits(isOne);
  Store(out, Low(bytes), kUpToTwo[one & 0xFF]);
  out += 16 - std::popcount(one & 0xFF);
  Store(out, High(bytes), kUpToTwo[one >> 8]);
  out += 16 - std::popcount(one >> 8);
}

/// True when every bit of the lanes that is in the mask is 0.
VOSMERE_STEP inline bool HasNone(__m256i lanes, int mask) {
  return _mm256_testz_si256(lanes, All(mask));
}

/// Stores four of the lanes; `one` and `two` have the bits of these four.
VOSMERE_STEP inline void StoreFour(__m128i lanes, unsigned one, unsigned two, Byte*& out) {
  const unsigned shorter = (one & 0xF) | (two & 0xF) << 4;
  Store(out, lanes, kUpToThree[shorter]);
  out += 12 - std::popcount(shorter);
}

VOSMERE_STEP inline void StoreUpToThree(__m256i units, __m256i start, unsigned one, unsigned two,
                                        Byte*& out) {
  const __m256i third = _mm256_or_si256(And(units, 0x3F), All(0x80));
  const __m256i even = _mm256_unpacklo_epi16(start, third);
  const __m256i odd = _mm256_unpackhi_epi16(start, third);
  StoreFour(Low(even), one, two, out);
  StoreFour(Low(odd), one >> 4, two >> 4, out);
  StoreFour(High(even), one >> 8, two >> 8, out);
  StoreFour(High(odd), one >> 12, two >> 12, out);
}

/// Advances by one block or two. A branch, so that the next load need not wait for the result.
template <class From, class To>
VOSMERE_STEP inline void Advance(const From*& in, To*& out, bool byTwo) {
  if (byTwo) [[likely]] {
    in += 2 * kBlock;
    out += 2 * kBlock;
  } else {
    in += kBlock;
    out += kBlock;
  }
}

/// Encodes 32 code units if they are ASCII, or else 16 if those are.
VOSMERE_STEP inline bool EncodeAscii(const WChar*& in, Byte*& out) {
  const __m256i first = Load(in), second = Load(in + kBlock);
  if (!HasNone(first, 0xFF80)) return false;
  const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), bytes);
  Advance(in, out, HasNone(second, 0xFF80));
  return true;
}

/// Encodes 16 code units, or 15 when a pair begins with the last. False when one of them is an
/// unpaired surrogate. It writes up to 4 bytes beyond the 48 that 16 code units have at most.
VOSMERE_STEP inline bool EncodeBlock(const WChar*& in, Byte*& out) {
  const __m256i units = Load(in);
  const __m256i isOne = IsUpTo(units, All(0x7F)), isUpToTwo = IsUpTo(units, All(0x7FF));
  if (_mm256_testc_si256(isUpToTwo, All(0xFFFF))) {
    StoreUpToTwo(units, isOne, out);
    in += kBlock;
    return true;
  }
  __m256i start = _mm256_blendv_epi8(StartOfThree(units), StartOfTwo(units), isUpToTwo);
  start = _mm256_blendv_epi8(start, units, isOne);
  const __m256i isSurrogate = _mm256_cmpeq_epi16(And(units, 0xF800), All(0xD800));
  const unsigned surrogates = Bits(isSurrogate);
  std::ptrdiff_t left = 0;
  if (surrogates) {
    const __m256i isHigh = _mm256_cmpeq_epi16(And(units, 0xFC00), All(0xD800));
    const unsigned high = Bits(isHigh);
    if (((high << 1) & 0xFFFF) != (surrogates & ~high)) return false;
    start = _mm256_blendv_epi8(start, HalfOfLow(units), isSurrogate);
    start = _mm256_blendv_epi8(start, HalfOfHigh(units), isHigh);
    left = high >> 15;
  }
  StoreUpToThree(units, start, Bits(isOne), Bits(isUpToTwo) | surrogates, out);
  in += kBlock - left;
  out -= 2 * left;
  return true;
}

VOSMERE_STEP inline __m256i Widened(__m128i bytes) {
  return _mm256_cvtepu8_epi16(bytes);
}
/// A bit for each byte that is at least that.
VOSMERE_STEP inline unsigned BitsFrom(__m128i bytes, int least) {
  const __m128i from = _mm_set1_epi8(static_cast<char>(least));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_max_epu8(bytes, from), bytes)));
}

VOSMERE_STEP inline __m128i Load16(const Byte* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

/// Decodes 32 bytes if they are ASCII. If a few of them are not, as in the texts of many languages,
/// it decodes up to the first of these, and that one if it has two bytes.
VOSMERE_STEP inline bool DecodeAscii(const Byte*& in, WChar*& out) {
  constexpr int kFew = 4;
  const __m256i bytes = Load(in);
  const unsigned others = static_cast<unsigned>(_mm256_movemask_epi8(bytes));
  if (std::popcount(others) > kFew) return false;
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), Widened(Low(bytes)));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + kBlock), Widened(High(bytes)));
  if (others == 0) [[likely]] {
    in += 2 * kBlock;
    out += 2 * kBlock;
    return true;
  }
  const int count = std::countr_zero(others);
  in += count;
  out += count;
  if (const unsigned code = OfTwo(FourBytes(in))) {
    *out++ = static_cast<WChar>(code);
    in += 2;
  }
  return true;
}

VOSMERE_STEP inline __m256i Bits32(__m256i lanes, int mask) {
  return _mm256_and_si256(lanes, _mm256_set1_epi32(mask));
}

/// True when three characters of three bytes may begin here. In mixed text they hardly ever do.
inline bool MayBeThrees(const Byte* in) {
  return (in[0] & in[3] & in[6] & 0xE0) == 0xE0;
}

/// Decodes eight characters of three bytes if there are as many. It reads 28 bytes.
VOSMERE_STEP inline bool DecodeThrees(const Byte*& in, WChar*& out) {
  const __m256i bytes =
      _mm256_inserti128_si256(_mm256_castsi128_si256(Load16(in)), Load16(in + 12), 1);
  const __m128i reversed = _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
  const __m256i threes = _mm256_shuffle_epi8(bytes, _mm256_broadcastsi128_si256(reversed));
  const __m256i isThree = _mm256_cmpeq_epi32(Bits32(threes, 0xF0C0C0), _mm256_set1_epi32(0xE08080));
  const __m256i codes = _mm256_or_si256(
      Bits32(threes, 0x3F), _mm256_or_si256(Bits32(_mm256_srli_epi32(threes, 2), 0xFC0),
                                            Bits32(_mm256_srli_epi32(threes, 4), 0xF000)));
  const __m256i isOther =
      _mm256_or_si256(_mm256_cmpgt_epi32(_mm256_set1_epi32(0x800), codes),
                      _mm256_cmpeq_epi32(Bits32(codes, 0xF800), _mm256_set1_epi32(0xD800)));
  if (_mm256_movemask_epi8(_mm256_andnot_si256(isOther, isThree)) != -1) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi32(Low(codes), High(codes)));
  in += 24;
  out += 8;
  return true;
}

/// Where the characters of a block are, a bit for each byte.
struct Layout {
  unsigned others;    // not ASCII
  unsigned fours;     // first bytes of four
  unsigned ends;      // last bytes
  int size;           // bytes of whole characters
  bool isWellFormed;  // the values of the characters are not checked yet
};

VOSMERE_STEP inline Layout LayoutOf(__m128i bytes, unsigned others) {
  const unsigned leads = BitsFrom(bytes, 0xC0), threes = BitsFrom(bytes, 0xE0),
                 fours = BitsFrom(bytes, 0xF0);
  const unsigned continuations = others & ~leads;
  const unsigned cut = (leads & 0x8000) | (threes & 0xC000) | (fours & 0xE000);
  const int size = cut ? std::countr_zero(cut) : int{kBlock};
  const unsigned whole = (1u << size) - 1;
  const unsigned expected = leads << 1 | threes << 2 | fours << 3;
  return {others, fours & whole, ~(continuations >> 1) & whole, size,
          ((expected ^ continuations) & (whole * 2 + 1)) == 0};
}

/// Decodes the whole characters of 16 bytes. False when one of them is ill-formed. It may write 8
/// code units too many.
VOSMERE_STEP inline bool DecodeBlock(const Byte*& in, WChar*& out) {
  const __m128i bytes = Load16(in);
  const __m256i last = Widened(bytes);
  const unsigned others = static_cast<unsigned>(_mm_movemask_epi8(bytes));
  const Layout layout = LayoutOf(bytes, others);
  if (!layout.isWellFormed) return false;

  // In the lane of each last byte, the character; in other lanes, anything.
  const __m256i before = Widened(_mm_slli_si128(bytes, 1)),
                third = Widened(_mm_slli_si128(bytes, 2));
  const __m256i isAscii = IsUpTo(last, All(0x7F));
  const __m256i isThree = _mm256_cmpgt_epi16(third, All(0xDF));
  const __m256i two = _mm256_or_si256(_mm256_slli_epi16(And(before, 0x3F), 6), And(last, 0x3F));
  __m256i units = _mm256_blendv_epi8(two, last, isAscii);
  units = _mm256_or_si256(units, _mm256_and_si256(isThree, _mm256_slli_epi16(third, 12)));
  const __m256i least =
      _mm256_blendv_epi8(_mm256_andnot_si256(isAscii, All(0x80)), All(0x800), isThree);
  __m256i isFine = _mm256_andnot_si256(
      _mm256_and_si256(isThree, _mm256_cmpeq_epi16(And(units, 0xF800), All(0xD800))),
      _mm256_cmpeq_epi16(_mm256_max_epu16(units, least), units));
  unsigned kept = layout.ends;
  if (layout.fours) {  // the third of four bytes gives the first half of the pair
    const __m256i isFourth = _mm256_cmpgt_epi16(Widened(_mm_slli_si128(bytes, 3)), All(0xEF));
    const __m256i isThird = _mm256_cmpgt_epi16(third, All(0xEF));
    const __m256i high =
        _mm256_add_epi16(All(0xD7C0 - 0xF000),
                         _mm256_add_epi16(_mm256_slli_epi16(third, 8), _mm256_srli_epi16(two, 4)));
    const __m256i low = Or(And(two, 0x3FF), _mm256_setzero_si256(), 0xDC00);
    units = _mm256_blendv_epi8(_mm256_blendv_epi8(units, low, isFourth), high, isThird);
    isFine = _mm256_blendv_epi8(_mm256_or_si256(isFine, isFourth),
                                _mm256_cmpeq_epi16(And(high, 0xFC00), All(0xD800)), isThird);
    kept |= layout.fours << 2;
  }
  if (kept & ~Bits(isFine)) return false;
  Store(out, Low(units), kUnits[kept & 0xFF]);
  out += std::popcount(kept & 0xFF);
  Store(out, High(units), kUnits[kept >> 8]);
  out += std::popcount(kept >> 8);
  in += layout.size;
  return true;
}

// Many texts are ASCII all through, or begin with a long run of it. Not inlined, because the
// compiler would then keep fewer constants of the other loops in registers.

VOSMERE_AVX2 [[gnu::noinline]] Encoding PassAscii(Encoding at, const WChar* end,
                                                  const Byte* outEnd) {
  for (; end - at.in >= kRun && outEnd - at.out >= kRun; at.in += kRun, at.out += kRun) {
    const __m256i units[] = {Load(at.in), Load(at.in + kBlock), Load(at.in + 2 * kBlock),
                             Load(at.in + 3 * kBlock)};
    if (!HasNone(units[0] | units[1] | units[2] | units[3], 0xFF80)) break;
    for (std::ptrdiff_t half = 0; half < 2; ++half) {
      const __m256i bytes = _mm256_packus_epi16(units[2 * half], units[2 * half + 1]);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(at.out) + half,
                          _mm256_permute4x64_epi64(bytes, 0xD8));
    }
  }
  return at;
}

VOSMERE_AVX2 [[gnu::noinline]] Decoding PassAscii(Decoding at, const Byte* end,
                                                  const WChar* outEnd) {
  for (; end - at.in >= kRun && outEnd - at.out >= kRun; at.in += kRun, at.out += kRun) {
    if (_mm256_movemask_epi8(Load(at.in) | Load(at.in + kRun / 2)) != 0) break;
    for (int block = 0; block < kRun / kBlock; ++block)
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(at.out) + block,
                          Widened(Load16(at.in + block * kBlock)));
  }
  return at;
}

}  // namespace

// The steps move local pointers, because the compiler must assume that a stored byte changes a
// pointer in memory.

VOSMERE_AVX2 Encoding EncodeBlocks(Encoding at, const WChar* end, const Byte* outEnd) {
  if (end - at.in >= 2 * kRun) at = PassAscii(at, end, outEnd);
  while (end - at.in >= kLeastUnits && outEnd - at.out >= 4 * kBlock) {
    if (EncodeAscii(at.in, at.out) || EncodeBlock(at.in, at.out)) continue;
    for (const WChar* const next = at.in + kBlock; at.in < next;) EncodeOne(at.in, end, at.out);
  }
  return at;
}

VOSMERE_AVX2 Decoding DecodeBlocks(Decoding at, const Byte* end, const WChar* outEnd) {
  if (end - at.in >= 2 * kRun) at = PassAscii(at, end, outEnd);
  while (end - at.in >= kLeastBytes && outEnd - at.out > 2 * kBlock) {
    if (at.in[0] < 0x80 && DecodeAscii(at.in, at.out)) continue;
    if (MayBeThrees(at.in) && DecodeThrees(at.in, at.out)) continue;
    if (DecodeBlock(at.in, at.out)) continue;
    // Ill-formed text often comes in runs, so the next bytes are decoded one by one.
    const std::ptrdiff_t most = std::min({end - at.in - 4, outEnd - at.out - 1, kSlow});
    for (const Byte* const next = at.in + most; at.in < next;) {
      const Character character = DecodeOne(FourBytes(at.in));
      at.in += character.length;
      Put(character.code, at.out);
    }
  }
  return at;
}

}  // namespace vosmere::utf8::avx2

#endif
