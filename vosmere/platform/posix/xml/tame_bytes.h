// Scanning and widening runs of ASCII, in blocks of 16 bytes with SSE2.
#pragma once

#include <cstddef>

#include "vosmere/base/types.h"

namespace vosmere::posix {

/// Where a value of a document stops being tame: the first byte from `at` on that is `&`, `<`,
/// `stop`, a control character or beyond ASCII; `end` if there is none.
const char* PassTame(const char* at, const char* end, char stop);

/// Converts ASCII to UTF-16.
void Widen(const char* ascii, std::size_t length, WChar* text);

}  // namespace vosmere::posix
