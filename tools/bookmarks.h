// Saving as a bookmark file, which is chosen by the name of the output.
#pragma once

#include <string>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// Whether the name ends with one of these endings, in any case.
bool HasEnding(const std::string& file, std::initializer_list<const char*> endings);
/// Whether the output is to be a bookmark file: "x.html", "x.htm".
bool IsBookmarkName(const std::string& file);

/// A tree, or what is in a collection, as a bookmark file. Throws Failure for any other document.
/// `file` is the name of the input for the message.
SavedBytes BookmarksOf(const AnyDocument& document, const std::string& file);

}  // namespace vosmere::tool
