#include "vosmere/base/build_number.h"

namespace vosmere {

const LONG kBuildNumber = VOSMERE_BUILD_NUMBER;

}  // namespace vosmere
