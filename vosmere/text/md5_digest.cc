#include "vosmere/text/md5_digest.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace vosmere {
namespace {

constexpr unsigned kBlock = 64;
constexpr unsigned kLengthOffset = 56;  // where the bit count stands in the last block

// The four auxiliary functions of RFC 1321, in the forms that need the fewest dependent steps.
constexpr ULONG F(ULONG x, ULONG y, ULONG z) { return z ^ (x & (y ^ z)); }
constexpr ULONG G(ULONG x, ULONG y, ULONG z) { return (x & z) + (y & ~z); }
constexpr ULONG H(ULONG x, ULONG y, ULONG z) { return x ^ y ^ z; }
constexpr ULONG I(ULONG x, ULONG y, ULONG z) { return y ^ (x | ~z); }

constexpr ULONG kSines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

constexpr int kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

}  // namespace

CMD5Digest::~CMD5Digest() = default;

void CMD5Digest::Init() {
  state_[0] = 0x67452301;
  state_[1] = 0xefcdab89;
  state_[2] = 0x98badcfe;
  state_[3] = 0x10325476;
  count_[0] = count_[1] = 0;
}

void CMD5Digest::Update(const unsigned char* input, unsigned length) {
  unsigned filled = (count_[0] >> 3) % kBlock;
  const ULONG bits = length << 3;
  count_[0] += bits;
  count_[1] += (length >> 29) + (count_[0] < bits);
  if (filled > 0) {
    const unsigned part = std::min(length, kBlock - filled);
    MD5_memcpy(buffer_ + filled, input, part);
    if (filled + part < kBlock) return;
    MD5Transform(state_, buffer_);
    input += part;
    length -= part;
  }
  for (; length >= kBlock; input += kBlock, length -= kBlock) MD5Transform(state_, input);
  MD5_memcpy(buffer_, input, length);
}

void CMD5Digest::Final(unsigned char* digest) {
  unsigned char bits[8];
  Encode(bits, count_, sizeof bits);
  const unsigned filled = (count_[0] >> 3) % kBlock;
  unsigned char padding[kBlock + 8] = {0x80};
  Update(padding, filled < kLengthOffset ? kLengthOffset - filled : 120 - filled);
  Update(bits, sizeof bits);
  Encode(digest, state_, sizeof state_);
  std::fill(std::begin(state_), std::end(state_), 0);
  std::fill(std::begin(count_), std::end(count_), 0);
  MD5_memset(buffer_, 0, sizeof buffer_);
}

void CMD5Digest::MD5String(unsigned char* digest, const char* text, int length) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
  Init();
  Update(bytes, length == -1 ? static_cast<unsigned>(std::strlen(text))
                             : static_cast<unsigned>(length));
  Final(digest);
  digest[16] = 0;
}

void CMD5Digest::MD5Transform(ULONG (&state)[4], const unsigned char* block) {
  ULONG x[16];
  Decode(x, block, kBlock);
  ULONG a = state[0], b = state[1], c = state[2], d = state[3];
  const auto step = [&](auto mix, int round, int i, int k) {
    const ULONG sum = a + kSines[i] + x[k & 15] + mix(b, c, d);
    a = d;
    d = c;
    c = b;
    b += std::rotl(sum, kShifts[round][i & 3]);
  };
#pragma GCC unroll 16
  for (int i = 0; i < 16; ++i) step(F, 0, i, i);
#pragma GCC unroll 16
  for (int i = 16; i < 32; ++i) step(G, 1, i, 5 * i + 1);
#pragma GCC unroll 16
  for (int i = 32; i < 48; ++i) step(H, 2, i, 3 * i + 5);
#pragma GCC unroll 16
  for (int i = 48; i < 64; ++i) step(I, 3, i, 7 * i);
  state[0] += a;
  state[1] += b;
  state[2] += c;
  state[3] += d;
}

void CMD5Digest::Encode(unsigned char* output, const ULONG* input, unsigned length) {
  for (unsigned i = 0; i < length; ++i)
    output[i] = static_cast<unsigned char>(input[i / 4] >> (i % 4 * 8));
}

void CMD5Digest::Decode(ULONG* output, const unsigned char* input, unsigned length) {
  for (unsigned i = 0; i < length; i += 4)
    output[i / 4] = input[i] | ULONG{input[i + 1]} << 8 | ULONG{input[i + 2]} << 16 |
                    ULONG{input[i + 3]} << 24;
}

void CMD5Digest::MD5_memcpy(unsigned char* output, const unsigned char* input, unsigned length) {
  if (length > 0) std::memcpy(output, input, length);
}

void CMD5Digest::MD5_memset(unsigned char* output, int value, unsigned length) {
  std::memset(output, value, length);
}

}  // namespace vosmere
