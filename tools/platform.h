// What a program has to do for itself on each system.
#pragma once

#include <string>
#include <vector>

namespace vosmere::tool {

using Arguments = std::vector<std::string>;

/// Runs a program's work with the arguments behind its name, in UTF-8, and returns what that
/// returns. On Windows COM is initialised for this thread, as loading documents needs, and the
/// console takes UTF-8; elsewhere the code page is that of the user's locale.
int RunProgram(int argc, char** argv, int (*work)(const Arguments& arguments));

}  // namespace vosmere::tool
