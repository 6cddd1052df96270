// FNV-1a over code units, for hash tables of texts.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/types.h"

namespace vosmere {

// The constants of the processor's own width: the ones for 64 bits do not fit into 32.
inline constexpr bool kHashIsWide = sizeof(std::size_t) == sizeof(std::uint64_t);
inline constexpr auto kTextHashStart =
    static_cast<std::size_t>(kHashIsWide ? 14695981039346656037u : 2166136261u);

constexpr std::size_t TextHashWith(std::size_t hash, WChar unit) {
  return (hash ^ unit) * static_cast<std::size_t>(kHashIsWide ? 1099511628211u : 16777619u);
}

}  // namespace vosmere
