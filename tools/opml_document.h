// A tree of folders and collections in an OPML document.
#pragma once

#include <memory>

#include "tools/documents.h"

namespace vosmere::tool {

/// Null, with the reason, when the file does not load.
std::unique_ptr<Document> LoadOpml(const WChar* path, DocumentError& error);

}  // namespace vosmere::tool
