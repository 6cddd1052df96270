// The main function's work that differs between systems.
#pragma once

#include <string>
#include <vector>

namespace vosmere::tool {

using Arguments = std::vector<std::string>;

/// Calls `work` with the arguments after the program's name and returns its result. On Windows the
/// arguments are converted to UTF-8, COM is initialised for this thread, which loading documents
/// needs, and the console is set to UTF-8. On Linux the arguments are unchanged, and the character
/// type locale is set to that of the user.
int RunProgram(int argc, char** argv, int (*work)(const Arguments& arguments));

}  // namespace vosmere::tool
