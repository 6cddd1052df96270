// Reading the same collections with other XML libraries, in the simple way that their manuals show.
#pragma once

#include <string>

#include "vosmere/collections/colct_node.h"

namespace vosmere::bench {

/// Parses into libxml2's document, then walks over it. The caller owns the collection with its
/// local tree.
CColctNode* ReadColctWithLibxml2(const std::string& document);
/// The same with pugixml.
CColctNode* ReadColctWithPugixml(const std::string& document);

}  // namespace vosmere::bench
