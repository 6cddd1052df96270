// From the parser's reports to a tree.
#pragma once

#include "vosmere/platform/posix/xml/arena.h"
#include "vosmere/platform/posix/xml/source.h"

namespace vosmere::posix {

/// Parses a document into an empty tree. `encoding` names the one that the source hands out; null
/// lets the bytes tell. Throws DocumentFailure, std::bad_alloc, and what the source throws.
void BuildXmlTree(XmlTree& tree, XmlSource& source, const char* encoding);

}  // namespace vosmere::posix
