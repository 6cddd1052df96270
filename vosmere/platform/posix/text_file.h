// Reads text files that were written on Windows: UTF-16 or 8-bit.
#pragma once

#include <cstddef>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere {

/// Converts a file's bytes to UTF-8. A byte-order mark selects UTF-16 of either byte order or
/// UTF-8. Bytes without one are UTF-8 if they are well-formed, otherwise Latin-1. Throws
/// std::bad_alloc.
std::string TextOf(std::string bytes);

/// Reads a whole file. False when it cannot be read or has more than `limit` bytes. Throws
/// std::bad_alloc.
bool ReadWholeFile(const WChar* path, std::size_t limit, std::string* bytes);

/// Convert between UTF-8 and UTF-16. Throw std::bad_alloc.
std::u16string WideOf(const std::string& utf8);
std::string Utf8Of(const std::u16string& text);

}  // namespace vosmere
