// Which Windows this is.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

struct SystemVersion {
  bool isNt;
  ULONG major;
  ULONG minor;
};

/// What the system says of itself; off Windows a present-day version, 10.0.
SystemVersion PlatformSystemVersion();

/// The same, unless a test has replaced it.
SystemVersion GetSystemVersion();
/// Replaces the answer; null restores the system's.
void SetSystemVersionForTesting(SystemVersion (*source)());

}  // namespace vosmere
