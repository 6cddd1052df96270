// Paths as the library knows them, and as the system does (platform/path.h says how they differ).
#pragma once

#include <limits.h>

#include <cstddef>
#include <string_view>

#include "vosmere/base/types.h"

namespace vosmere {

/// The name of a file, with slashes for backslashes. False, with the reason in errno, when it is
/// too long.
bool NativePath(const WChar* path, char (&name)[PATH_MAX]);

/// Where NativePath comes from: a path, or the part of one that names a file in its folder. Never
/// more units than the name has bytes; returns their number, or utf8::kNoRoom. Adds no zero.
std::size_t PathOfName(std::string_view name, WChar* path, std::size_t capacity);

}  // namespace vosmere
