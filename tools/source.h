// Where a document's bytes come from.
#pragma once

#include <string>

#include "tools/kind.h"

namespace vosmere::tool {

/// Lets readers load a file as often as they like. One that may give its bytes only once, as a pipe
/// does, is read here and now, up to 256 MiB. Throws Failure; a file that is not there is reported
/// by the reader.
Source SourceOf(const std::string& file);

}  // namespace vosmere::tool
