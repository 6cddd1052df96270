// New identities.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

inline constexpr int kUuidTextLength = 36;

/// Writes a new UUID as 36 lower-case units (8-4-4-4-12) and a zero unit. False when the platform
/// has none to give; the text is then unchanged.
bool NewUuidText(WChar (&text)[kUuidTextLength + 1]);

}  // namespace vosmere
