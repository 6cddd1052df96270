// A document of any kind, from a file.
#pragma once

#include <string>

#include "tools/failure.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The failure that an error is, about a file of that name in messages.
Failure FailureOf(const std::string& name, const Error& error);

/// Loads a document of any kind from a file, or for "-" from the standard input. Throws Failure.
AnyDocument LoadDocument(const std::string& file, Losses* leftOut = nullptr);

/// Saves it to memory, with so many places of each loss. Throws Failure about the file that it came
/// from.
SavedBytes SaveDocument(const AnyDocument& document, const std::string& file, std::size_t places);

}  // namespace vosmere::tool
