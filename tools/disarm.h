// A document without the values that would break a copy of it.
#pragma once

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The text of the document at `path`, in which every value that would break markup it is written
/// into as it is has lost the characters that do. Null when the file does not load.
SystemString Disarmed(const WChar* path);

}  // namespace vosmere::tool
