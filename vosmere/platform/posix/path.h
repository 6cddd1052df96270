// Paths as the library knows them, and as the system does.
#pragma once

#include <limits.h>

#include "vosmere/base/types.h"

namespace vosmere {

/// In UTF-8, with slashes for backslashes. False, with the reason in errno, when it is too long.
bool NativePath(const WChar* path, char (&name)[PATH_MAX]);

}  // namespace vosmere
