// Where what the tool writes goes.
#pragma once

#include <string>

#include "tools/replace_file.h"

namespace vosmere::tool {

/// Lets `write` make a file, which then replaces the file of that name (ReplaceFile) or, for "-",
/// goes to the standard output. When `write` throws, nothing is replaced and nothing goes out.
/// Throws Failure.
void WriteOutput(const std::string& file, const FileWriter& write);

}  // namespace vosmere::tool
