// Hashing with a secret that is drawn once in each process, so that nobody can choose texts that
// collide.
#pragma once

#include <cstdint>

namespace vosmere {

/// Two numbers, the same for the life of the process.
const std::uint64_t* HashSecret();

/// Both halves of the product, mixed: every bit of the result depends on all bits of `a` and `b`.
inline std::uint64_t MultiplyAndFold(std::uint64_t a, std::uint64_t b) {
#ifdef __SIZEOF_INT128__
  __extension__ typedef unsigned __int128 Product;
  const Product product = static_cast<Product>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
#else
  constexpr std::uint64_t kLow = 0xFFFFFFFF;
  const std::uint64_t low = (a & kLow) * (b & kLow), high = (a >> 32) * (b >> 32);
  const std::uint64_t cross = (a & kLow) * (b >> 32), other = (a >> 32) * (b & kLow);
  const std::uint64_t middle = (low >> 32) + (cross & kLow) + (other & kLow);
  return ((low & kLow) | middle << 32) ^ (high + (cross >> 32) + (other >> 32) + (middle >> 32));
#endif
}

}  // namespace vosmere
