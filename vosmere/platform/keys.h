// The state of the keyboard's keys, by the virtual key codes of Windows.
#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

/// Virtual key codes.
inline constexpr int kKeyShift = 16;
inline constexpr int kKeyControl = 17;
inline constexpr int kKeyAlt = 18;

/// The state of a virtual key, negative while the key is held down. On Windows it is the system's
/// state for the calling thread. On other systems no key is ever held, unless a source is set.
VOSMERE_API short KeyState(int virtualKey);

/// Sets a function that KeyState calls instead of asking the platform, for programs that know the
/// keyboard state better. Null restores the platform's answer. The function may be called on
/// several threads at once.
VOSMERE_API void SetKeyStateSource(short (*source)(int virtualKey));

}  // namespace vosmere
