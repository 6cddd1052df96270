// The version of Windows.
#include "vosmere/platform/internal/system_version.h"

#include <windows.h>

namespace vosmere {

// The extended structure first; systems that are older than it accept only the plain one.
SystemVersion PlatformSystemVersion() {
  OSVERSIONINFOEXW info = {};
  auto* const plain = reinterpret_cast<OSVERSIONINFOW*>(&info);
  info.dwOSVersionInfoSize = sizeof info;
  if (!::GetVersionExW(plain)) {
    info.dwOSVersionInfoSize = sizeof *plain;
    if (!::GetVersionExW(plain)) return {};
  }
  return {info.dwPlatformId == VER_PLATFORM_WIN32_NT, info.dwMajorVersion, info.dwMinorVersion};
}

}  // namespace vosmere
