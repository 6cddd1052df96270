// Makes new UUIDs.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// Code units of a UUID's text, without the terminating null.
inline constexpr int kUuidTextLength = 36;

/// Writes a new UUID as lower-case text (8-4-4-4-12, RFC 4122) with a terminating null. False, with
/// the text unchanged, when the platform cannot make one.
bool NewUuidText(WChar (&text)[kUuidTextLength + 1]);

}  // namespace vosmere
