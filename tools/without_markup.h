// A document without the values that would break a copy of it.
#pragma once

#include <string>

#include "vosmere/platform/xml_node.h"

namespace vosmere::tool {

/// The document from its root element on, in UTF-8. Every value that would break markup it is
/// written into as it is has lost the characters that do.
std::string Disarmed(const XmlNode& root);

}  // namespace vosmere::tool
