// The verb "import".
#pragma once

#include <string>

namespace vosmere::tool {

struct ImportOptions {
  std::string file;
  std::string output;
};

/// Imports a file, lists the repairs, and saves what was read. Throws Failure.
int ImportFile(const ImportOptions& options);

}  // namespace vosmere::tool
