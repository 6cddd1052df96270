// The version that this library was built as.
#include "vosmere/base/build_number.h"

#include "vosmere/base/version.h"

namespace vosmere {

static_assert(VOSMERE_VERSION_MINOR < 10 && VOSMERE_VERSION_PATCH < 10,
              "the build number has one digit for the minor version and one for the patch");

const LONG kBuildNumber = VOSMERE_VERSION;

}  // namespace vosmere
