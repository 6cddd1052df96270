// The version of the library, as a number that stored documents carry.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The library's version as one number: major * 100 + minor * 10 + patch. The RSS writer puts it
/// into the generator element as "major.minor.patch".
VOSMERE_API extern const LONG kBuildNumber;

}  // namespace vosmere
