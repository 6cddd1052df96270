#include "vosmere/base/internal/keyed_hash.h"

#include <chrono>
#include <random>

namespace vosmere {

static std::uint64_t Draw() {
  try {
    std::random_device device;
    return std::uint64_t{device()} << 32 | device();
  } catch (...) {  // without random numbers, the time is harder to guess than a constant
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return static_cast<std::uint64_t>(now) * 0x9E3779B97F4A7C15;
  }
}

const std::uint64_t* HashSecret() {
  static const std::uint64_t secret[] = {Draw(), Draw()};
  return secret;
}

}  // namespace vosmere
