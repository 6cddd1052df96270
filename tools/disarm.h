// A document without the values that would break a copy of it.
#pragma once

#include "tools/kind.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The text of the document, in which every value that would break markup it is written
/// into as it is has lost the characters that do. Null when it does not load.
SystemString Disarmed(const Source& source);

}  // namespace vosmere::tool
