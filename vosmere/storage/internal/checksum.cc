// Computes CRC-32C with tables, eight bytes at a time.
#include "vosmere/storage/internal/checksum.h"

#include <array>

namespace vosmere {
namespace {

constexpr std::uint32_t kPolynomial = 0x82F63B78;  // Castagnoli's, bits reversed
constexpr std::size_t kSlices = 8;                 // bytes taken at a time

using Table = std::array<std::array<std::uint32_t, 256>, kSlices>;

constexpr Table MakeTable() {
  Table table{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t rest = byte;
    for (int bit = 0; bit < 8; ++bit) rest = (rest >> 1) ^ (rest & 1 ? kPolynomial : 0);
    table[0][byte] = rest;
  }
  for (std::size_t slice = 1; slice < kSlices; ++slice)
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t rest = table[slice - 1][byte];
      table[slice][byte] = (rest >> 8) ^ table[0][rest & 0xFF];
    }
  return table;
}

constexpr Table kTable = MakeTable();

std::uint32_t Word(const unsigned char* bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

}  // namespace

std::uint32_t Checksum(std::uint32_t before, const void* bytes, std::size_t size) {
  auto* at = static_cast<const unsigned char*>(bytes);
  std::uint32_t rest = ~before;
  for (; size >= kSlices; at += kSlices, size -= kSlices) {
    const std::uint32_t low = rest ^ Word(at), high = Word(at + 4);
    rest = kTable[7][low & 0xFF] ^ kTable[6][low >> 8 & 0xFF] ^ kTable[5][low >> 16 & 0xFF] ^
           kTable[4][low >> 24] ^ kTable[3][high & 0xFF] ^ kTable[2][high >> 8 & 0xFF] ^
           kTable[1][high >> 16 & 0xFF] ^ kTable[0][high >> 24];
  }
  if (size >= 4) {
    rest ^= Word(at);
    rest = kTable[3][rest & 0xFF] ^ kTable[2][rest >> 8 & 0xFF] ^ kTable[1][rest >> 16 & 0xFF] ^
           kTable[0][rest >> 24];
    at += 4;
    size -= 4;
  }
  for (; size > 0; ++at, --size) rest = (rest >> 8) ^ kTable[0][(rest ^ *at) & 0xFF];
  return ~rest;
}

}  // namespace vosmere
