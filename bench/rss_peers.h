// The same collections read by the libraries that one would use otherwise, in the plain way their
// manuals show.
#pragma once

#include <string>

#include "vosmere/collections/colct_node.h"

namespace vosmere::bench {

/// Reads into libxml2's own document, then walks that. The caller frees the collection with its
/// local tree.
CColctNode* ReadColctWithLibxml2(const std::string& document);
/// The same over pugixml.
CColctNode* ReadColctWithPugixml(const std::string& document);

}  // namespace vosmere::bench
