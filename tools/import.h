// The verb "import".
#pragma once

#include <string>

namespace vosmere::tool {

struct ImportOptions {
  std::string file;
  std::string output;
  std::string into;   ///< the list to merge into, instead of an output
  bool json = false;  ///< prints repairs, conflicts and losses as JSON
};

/// Imports a file, lists the repairs, and saves what was read, or merges it into a list and saves
/// that. Throws Failure.
int ImportFile(const ImportOptions& options);

}  // namespace vosmere::tool
