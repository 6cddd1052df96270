// The verb "diff": what differs between two documents, item by item.
#pragma once

#include <string>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// Prints the differences of two documents of any kind, as lines or as JSON, and returns the exit
/// code. Throws Failure, always with kTrouble.
int Diff(const std::string& a, const std::string& b, bool asJson);

/// Prints the differences of two documents of the same kind, a line for each item or one JSON array
/// of objects, and returns whether there are any.
bool PrintDifferences(const AnyDocument& a, const AnyDocument& b, bool asJson);

}  // namespace vosmere::tool
