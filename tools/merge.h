// The verb "merge": one document of two that have been changed independently.
#pragma once

#include <string>
#include <vector>

#include "vosmere/cpp.h"

namespace vosmere::tool {

struct MergeOptions {
  std::vector<std::string> bases;  ///< the newest first; of several the one that fits is used
  std::string ours;
  std::string theirs;
  std::string out;
  bool dryRun = false;  ///< prints what would change in ours, and writes nothing
  bool json = false;    ///< prints the conflicts, losses and changes as JSON
};

/// Merges two trees or two collections, prints the conflicts to standard error and returns the exit
/// code. Throws Failure.
int Merge(const MergeOptions& options);

/// Prints each conflict on a line of the standard error.
void PrintConflicts(const std::vector<Conflict>& conflicts);

}  // namespace vosmere::tool
