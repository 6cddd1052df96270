// Converts the system's file names to the library's paths.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Returns the path that opens the file `name`. `name` is a complete path in the system's encoding:
/// UTF-8 on Windows, the file's raw bytes on other systems. The caller frees the path with
/// SysFreeString. Null for a null `name`, and when memory runs out.
///
/// On systems other than Windows a name may contain bytes that are not well-formed UTF-8, and
/// backslashes that are not separators. Each such byte becomes the unpaired surrogate U+DC00 plus
/// the byte, and becomes that byte again when the path is opened. Shown as text it is U+FFFD.
VOSMERE_API BSTR PathFromName(const char* name);

/// The inverse: the file name for a path, with its terminating null. False when it does not fit in
/// `capacity` bytes, or is too long for the system.
VOSMERE_API bool NameFromPath(const WChar* path, char* name, std::size_t capacity);

}  // namespace vosmere
