// A document as one self-contained HTML page.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tools/document_content.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// Prints the page: a tree that folds, with a search field and, beside each item, what is wrong
/// with it. It needs no other file, and no text of the document is ever taken for HTML or script.
/// `title` is printed as its heading.
void ShowHtml(const Record& content, const std::string& title, const Losses& findings,
              std::ostream& out);

}  // namespace vosmere::tool
