// MD5, with the four rounds of 16 steps unrolled at compile time.
#include "vosmere/text/md5_digest.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vosmere {
namespace {

// The constants of RFC 1321, one for each step: the integer part of 2^32 * |sin(step + 1)|.
constexpr ULONG kAddends[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

// How far each step rotates: four values per round, used in turn.
constexpr int kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

/// Index of the word of the block that a step uses.
template <int kRound>
constexpr int WordOf(int step) {
  return (kRound == 0   ? step
          : kRound == 1 ? 5 * step + 1
          : kRound == 2 ? 3 * step + 5
                        : 7 * step) %
         16;
}

// Each step depends on the `b` of the previous one. What does not depend on it is added first, so
// that the processor can do it while it waits.
template <int kRound>
inline ULONG MixEarly(ULONG c, ULONG d) {
  return kRound == 1 ? c & ~d : 0;
}

template <int kRound>
inline ULONG MixLate(ULONG b, ULONG c, ULONG d) {
  if constexpr (kRound == 0) return d ^ (b & (c ^ d));
  if constexpr (kRound == 1) return b & d;
  if constexpr (kRound == 2) return b ^ (c ^ d);
  return c ^ (b | ~d);
}

template <int kRound, int kStep>
inline void Step(ULONG& a, ULONG b, ULONG c, ULONG d, const ULONG* words) {
  const ULONG early =
      a + words[WordOf<kRound>(kStep)] + kAddends[16 * kRound + kStep] + MixEarly<kRound>(c, d);
  a = b + std::rotl(early + MixLate<kRound>(b, c, d), kShifts[kRound][kStep % 4]);
}

template <int kRound, int kStep>
inline void FourSteps(ULONG& a, ULONG& b, ULONG& c, ULONG& d, const ULONG* words) {
  Step<kRound, kStep>(a, b, c, d, words);
  Step<kRound, kStep + 1>(d, a, b, c, words);
  Step<kRound, kStep + 2>(c, d, a, b, words);
  Step<kRound, kStep + 3>(b, c, d, a, words);
}

template <int kRound>
inline void Round(ULONG& a, ULONG& b, ULONG& c, ULONG& d, const ULONG* words) {
  FourSteps<kRound, 0>(a, b, c, d, words);
  FourSteps<kRound, 4>(a, b, c, d, words);
  FourSteps<kRound, 8>(a, b, c, d, words);
  FourSteps<kRound, 12>(a, b, c, d, words);
}

constexpr unsigned kBlockSize = 64;

}  // namespace

CMD5Digest::~CMD5Digest() = default;

void CMD5Digest::Init() {
  constexpr ULONG kStart[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
  std::copy_n(kStart, 4, state_);
  count_[0] = count_[1] = 0;
}

void CMD5Digest::Update(const unsigned char* input, unsigned length) {
  if (length == 0) return;
  const unsigned fill = count_[0] / 8 % kBlockSize;
  const unsigned room = kBlockSize - fill;
  // The length in bits has 64 bits; the comparison is the carry.
  const ULONG bits = length << 3;
  count_[1] += (length >> 29) + (count_[0] > ~bits);
  count_[0] += bits;

  if (length < room) return MD5_memcpy(buffer_ + fill, input, length);
  if (fill) {
    MD5_memcpy(buffer_ + fill, input, room);
    MD5Transform(state_, buffer_);
    input += room;
    length -= room;
  }
  for (; length >= kBlockSize; input += kBlockSize, length -= kBlockSize)
    MD5Transform(state_, input);
  MD5_memcpy(buffer_, input, length);
}

void CMD5Digest::Final(unsigned char* digest) {
  constexpr unsigned char kPadding[kBlockSize] = {0x80};
  unsigned char bits[8];
  Encode(bits, count_, 8);
  const unsigned fill = count_[0] / 8 % kBlockSize;
  // Pads to 56 bytes modulo 64, so that the length fills the last block.
  Update(kPadding, (fill < 56 ? 56 : 120) - fill);
  Update(bits, 8);
  Encode(digest, state_, 16);
  std::fill_n(state_, 4, 0);
  std::fill_n(count_, 2, 0);
  MD5_memset(buffer_, 0, kBlockSize);
}

void CMD5Digest::MD5String(unsigned char* digest, const char* text, int length) {
  const std::size_t size = !text ? 0 : length < 0 ? std::strlen(text) : length;
  Init();
  Update(reinterpret_cast<const unsigned char*>(text), static_cast<unsigned>(size));
  Final(digest);
  digest[16] = 0;
}

void CMD5Digest::MD5Transform(ULONG (&state)[4], const unsigned char* block) {
  ULONG words[16];
  Decode(words, block, kBlockSize);
  ULONG a = state[0], b = state[1], c = state[2], d = state[3];
  Round<0>(a, b, c, d, words);
  Round<1>(a, b, c, d, words);
  Round<2>(a, b, c, d, words);
  Round<3>(a, b, c, d, words);
  state[0] += a;
  state[1] += b;
  state[2] += c;
  state[3] += d;
}

void CMD5Digest::Encode(unsigned char* output, const ULONG* input, unsigned length) {
  for (unsigned i = 0; i < length; ++i)
    output[i] = static_cast<unsigned char>(input[i / 4] >> 8 * (i % 4));
}

void CMD5Digest::Decode(ULONG* output, const unsigned char* input, unsigned length) {
  for (const unsigned char* const end = input + length; input < end; input += 4)
    *output++ = input[0] | input[1] << 8 | input[2] << 16 | ULONG{input[3]} << 24;
}

void CMD5Digest::MD5_memcpy(unsigned char* output, const unsigned char* input, unsigned length) {
  std::copy_n(input, length, output);
}

void CMD5Digest::MD5_memset(unsigned char* output, int value, unsigned length) {
  std::fill_n(output, length, static_cast<unsigned char>(value));
}

}  // namespace vosmere
