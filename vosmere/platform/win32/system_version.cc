#include "vosmere/platform/system_version.h"

#include <windows.h>

#include <atomic>

namespace vosmere {
namespace {

std::atomic<SystemVersion (*)()> testVersion{nullptr};

}  // namespace

// The extended form first: systems older than it know only the plain one.
SystemVersion GetSystemVersion() {
  if (auto* const version = testVersion.load()) return version();
  OSVERSIONINFOEXW info = {};
  auto* const plain = reinterpret_cast<OSVERSIONINFOW*>(&info);
  info.dwOSVersionInfoSize = sizeof info;
  if (!::GetVersionExW(plain)) {
    info.dwOSVersionInfoSize = sizeof *plain;
    if (!::GetVersionExW(plain)) return {};
  }
  return {info.dwPlatformId == VER_PLATFORM_WIN32_NT, info.dwMajorVersion, info.dwMinorVersion};
}

void SetSystemVersionForTesting(SystemVersion (*source)()) {
  testVersion = source;
}

}  // namespace vosmere
