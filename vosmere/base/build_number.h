#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The library's version as one number: major * 100 + minor * 10 + patch. Documents name it.
VOSMERE_API extern const LONG kBuildNumber;

}  // namespace vosmere
