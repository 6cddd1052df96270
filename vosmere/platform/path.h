// The system's names of files as the library's paths.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The path that leads to the file which the system knows by `name`, a whole path in the system's
/// own bytes: UTF-8 on Windows, whatever the file is called elsewhere. The caller frees it with
/// SysFreeString. Null for null, and when memory runs out.
///
/// Elsewhere than on Windows a name may hold what a path cannot say as it is: bytes that are not
/// UTF-8, and backslashes that do not separate. Such a byte becomes the lone surrogate U+DC00 plus
/// the byte, which leads back to it wherever a path is opened; shown as text it is U+FFFD.
VOSMERE_API BSTR PathFromName(const char* name);

/// The other way: the name that a path leads to, with its zero. False when `capacity` bytes do not
/// hold it, or the system takes no name that long.
VOSMERE_API bool NameFromPath(const WChar* path, char* name, std::size_t capacity);

}  // namespace vosmere
