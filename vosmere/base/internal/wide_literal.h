// Constant wide texts as arrays of WChar.
#pragma once

#include <cstddef>

#include "vosmere/base/types.h"

namespace vosmere {

/// A null-terminated constant: `constexpr WideLiteral kUntitled(u"Untitled-");`. It exists because
/// a u"" literal has the type char16_t, which does not convert to WChar.
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
