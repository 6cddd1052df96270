// The system's version, which tests can replace.
#include "vosmere/platform/internal/system_version.h"

#include <atomic>

namespace vosmere {
namespace {

std::atomic<SystemVersion (*)()> testVersion{nullptr};

}  // namespace

SystemVersion GetSystemVersion() {
  auto* const version = testVersion.load();
  return version ? version() : PlatformSystemVersion();
}

void SetSystemVersionForTesting(SystemVersion (*source)()) {
  testVersion = source;
}

}  // namespace vosmere
