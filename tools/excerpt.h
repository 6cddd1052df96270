// The line of a file that an error is about.
#pragma once

#include <filesystem>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere::tool {

/// The line and, below it, a caret at the column (in characters; both count from 1). A long line is
/// cut around the column. Empty if the place is unknown, or the file cannot be read a second time
/// or is not in UTF-8.
std::string Excerpt(const std::filesystem::path& file, LONG line, LONG column);

}  // namespace vosmere::tool
