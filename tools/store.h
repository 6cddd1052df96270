// Stores: the trees that they hold, their changes and their checkpoints.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The tree of a store, which stays as it is. What opening it had to say goes to the standard
/// error.
Result<AnyDocument> LoadStore(const std::string& folder);

/// A line for each change, the oldest first. Throws Failure.
int ShowLog(const std::string& folder, std::ostream& out);

/// A line for each checkpoint, the newest first; where `restored` is not 0, makes a new one of
/// that. Throws Failure.
int Recover(const std::string& folder, std::uint64_t restored, std::ostream& out);

}  // namespace vosmere::tool
