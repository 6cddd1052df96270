// FNV-1a over code units, for hash tables of texts.
#pragma once

#include <cstddef>

#include "vosmere/base/types.h"

namespace vosmere {

inline constexpr std::size_t kTextHashStart = 14695981039346656037u;

constexpr std::size_t TextHashWith(std::size_t hash, WChar unit) {
  return (hash ^ unit) * 1099511628211u;
}

}  // namespace vosmere
