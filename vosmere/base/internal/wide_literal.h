#pragma once

#include <cstddef>

#include "vosmere/base/types.h"

namespace vosmere {

/// A zero-terminated constant text: `constexpr WideLiteral kUntitled(u"Untitled-");`
template <std::size_t N>
class WideLiteral {
 public:
  constexpr explicit WideLiteral(const char16_t (&text)[N]) {
    for (std::size_t i = 0; i < N; ++i) units_[i] = text[i];
  }
  constexpr operator const WChar*() const { return units_; }

 private:
  WChar units_[N] = {};
};

}  // namespace vosmere
