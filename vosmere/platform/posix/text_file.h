// Text files that were written on Windows: UTF-16 or 8-bit.
#pragma once

#include <cstddef>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere {

/// The text as UTF-8. A mark decides between UTF-16 of either order and UTF-8; bytes without one
/// are UTF-8 if they are well-formed, else each is the character of the same value. Throws
/// std::bad_alloc.
std::string TextOf(std::string bytes);

/// Reads a whole file. False when it cannot be read or has more than `limit` bytes. Throws
/// std::bad_alloc.
bool ReadWholeFile(const WChar* path, std::size_t limit, std::string* bytes);

/// UTF-16 of UTF-8 and back. Throw std::bad_alloc.
std::u16string WideOf(const std::string& utf8);
std::string Utf8Of(const std::u16string& text);

}  // namespace vosmere
