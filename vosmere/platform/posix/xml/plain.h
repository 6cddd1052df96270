// A fast parser for plain XML documents, which is tried before libxml2.
#pragma once

#include <string_view>

#include "vosmere/platform/posix/xml/arena.h"

namespace vosmere::posix {

/// Parses a plain document into an empty tree: well-formed, in UTF-8, without a DOCTYPE, with ASCII
/// names, and within smaller limits than libxml2's. For every other document the result is false,
/// with the tree in an undefined state, and libxml2 decides whether and how it loads. An accepted
/// document gives the same tree as libxml2 with the same `encoding`. Throws std::bad_alloc.
bool BuildPlainXmlTree(XmlTree& tree, std::string_view document, const char* encoding);

}  // namespace vosmere::posix
