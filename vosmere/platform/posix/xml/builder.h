// Builds a tree with libxml2.
#pragma once

#include "vosmere/platform/posix/xml/arena.h"
#include "vosmere/platform/posix/xml/source.h"

namespace vosmere::posix {

/// Parses a document into an empty tree. `encoding` names the encoding of the source; null detects
/// it from the bytes. Throws DocumentFailure, std::bad_alloc, and what the source throws.
void BuildXmlTree(XmlTree& tree, XmlSource& source, const char* encoding);

}  // namespace vosmere::posix
