// Which keys are held down.
#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

inline constexpr int kKeyShift = 16;
inline constexpr int kKeyControl = 17;
inline constexpr int kKeyAlt = 18;

/// The state of a virtual key; negative while it is held. On Windows the system's answer for the
/// calling thread, elsewhere no key is ever held, unless a source is set.
VOSMERE_API short KeyState(int virtualKey);

/// Lets an embedding program that knows the keyboard answer instead; null restores the platform's.
VOSMERE_API void SetKeyStateSource(short (*source)(int virtualKey));

}  // namespace vosmere
