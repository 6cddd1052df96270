// The version of Windows that the library runs on.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// A version of Windows, for example NT 5.1 for Windows XP.
struct SystemVersion {
  bool isNt;
  ULONG major;
  ULONG minor;
};

/// The version that the system reports; on other systems a current one, NT 10.0.
SystemVersion PlatformSystemVersion();

/// The same, unless a test has replaced it.
SystemVersion GetSystemVersion();
/// Replaces the version in tests; null restores the system's.
void SetSystemVersionForTesting(SystemVersion (*source)());

}  // namespace vosmere
