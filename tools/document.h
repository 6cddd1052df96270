// Loading and saving documents of any kind.
#pragma once

#include <string>

#include "tools/failure.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// Turns an error into a failure of the tool. `name` is the name of the file in messages.
Failure FailureOf(const std::string& name, const Error& error);

/// Prints the message and the excerpt to the standard error.
void PrintFailure(const Failure& failure);

/// Loads a document of any kind from a file, or from standard input if `file` is "-". If `leftOut`
/// is not null, it receives the losses. Throws Failure.
AnyDocument LoadDocument(const std::string& file, Losses* leftOut = nullptr);

/// Saves a document to memory and records up to `places` places for each loss. Throws Failure;
/// `file`, from which the document was loaded, is the name in the message. `pages` is
/// SaveOptions::pages.
SavedBytes SaveDocument(const AnyDocument& document, const std::string& file, std::size_t places,
                        bool pages = false);

/// A collection with the content of a tree, in its order.
Collection CollectionOf(Tree tree);

}  // namespace vosmere::tool
