// The address of a page or engine that was given none.
#pragma once

#include "vosmere/base/internal/wide_literal.h"

namespace vosmere {

inline constexpr WideLiteral kBlankPage(u"about:blank");

}  // namespace vosmere
