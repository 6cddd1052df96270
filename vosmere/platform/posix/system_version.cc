// The version of Windows that the library assumes on other systems.
#include "vosmere/platform/internal/system_version.h"

namespace vosmere {

SystemVersion PlatformSystemVersion() {
  return {true, 10, 0};
}

}  // namespace vosmere
