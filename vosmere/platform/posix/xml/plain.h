// A fast path in front of the parser, for the documents that most files are.
#pragma once

#include <string_view>

#include "vosmere/platform/posix/xml/arena.h"

namespace vosmere::posix {

/// Parses a plain document into an empty tree: well-formed, in UTF-8, without a DOCTYPE, with ASCII
/// names, and within smaller bounds than the parser's. False, with the tree in any state, for every
/// other document: whether and how it loads is for the parser to say. What is accepted is what the
/// parser makes of it when it is told the same `encoding`. Throws std::bad_alloc.
bool BuildPlainXmlTree(XmlTree& tree, std::string_view document, const char* encoding);

}  // namespace vosmere::posix
