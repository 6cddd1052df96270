#include "vosmere/platform/internal/system_version.h"

namespace vosmere {

SystemVersion PlatformSystemVersion() {
  return {true, 10, 0};
}

}  // namespace vosmere
