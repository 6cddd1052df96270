// Converts between the library's paths and the system's file names (platform/path.h explains how
// they differ).
#pragma once

#include <limits.h>

#include <cstddef>
#include <string_view>

#include "vosmere/base/types.h"

namespace vosmere {

/// Converts a path to a null-terminated file name, with slashes for backslashes. False, with the
/// reason in errno, when it is too long.
bool NativePath(const WChar* path, char (&name)[PATH_MAX]);

/// The inverse of NativePath, for a whole path or one component of it. The result never has more
/// code units than the name has bytes. Returns the number of code units, or utf8::kNoRoom. Writes
/// no terminating null.
std::size_t PathOfName(std::string_view name, WChar* path, std::size_t capacity);

}  // namespace vosmere
