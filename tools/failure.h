// How the program ends, and how a verb says that it cannot go on.
#pragma once

#include <string>

namespace vosmere::tool {

enum ExitCode : int {
  kFine = 0,
  kBadFile = 1,  ///< a file is not what it should be
  kTrouble = 2,  ///< wrong usage, or something cannot be read or written
};

/// Thrown when a verb cannot go on with a file.
struct Failure {
  int exitCode;
  std::string message;  ///< one printable line
};

}  // namespace vosmere::tool
