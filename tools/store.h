// Stores: their trees, their changes and their checkpoints.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// Loads the tree of a store, which is not changed. Messages from opening it are printed to
/// standard error.
Result<AnyDocument> LoadStore(const std::string& folder);

/// Prints a line for each change, the oldest first, and returns the exit code. Throws Failure.
int ShowLog(const std::string& folder, bool asJson, std::ostream& out);

/// Prints a line for each checkpoint, the newest first, and returns the exit code. If `restored` is
/// not 0, makes a copy of that checkpoint the newest one. Throws Failure.
int Recover(const std::string& folder, std::uint64_t restored, bool asJson, std::ostream& out);

}  // namespace vosmere::tool
