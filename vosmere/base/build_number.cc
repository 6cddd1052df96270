// The value comes from the build file, so that the version is set in one place.
#include "vosmere/base/build_number.h"

namespace vosmere {

const LONG kBuildNumber = VOSMERE_BUILD_NUMBER;

}  // namespace vosmere
