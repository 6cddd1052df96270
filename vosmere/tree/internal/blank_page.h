// The address of pages and search engines that have not been given one.
#pragma once

#include "vosmere/base/internal/wide_literal.h"

namespace vosmere {

inline constexpr WideLiteral kBlankPage(u"about:blank");

}  // namespace vosmere
