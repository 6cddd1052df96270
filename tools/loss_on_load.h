// What a file holds and the document that is loaded from it does not.
#pragma once

#include "tools/check_findings.h"
#include "tools/known_elements.h"
#include "vosmere/base/document_error.h"

namespace vosmere::tool {

/// Looks at the document from its root element on. True when an attribute that is kept holds a
/// character that breaks markup it is written into as it is.
bool Audit(const XmlNode& root, const Vocabulary& vocabulary, Findings& findings);

/// The value of an attribute, in UTF-8; none for a null handle.
std::optional<std::string> AttributeOf(const XmlNode& element, std::string_view name);
/// The first child element of that name; a null handle when there is none.
XmlNode ChildOf(const XmlNode& element, std::string_view name);

/// Calls `visit` with every child element of that name.
void ForEachChild(const XmlNode& element, std::string_view name,
                  const std::function<void(const XmlNode& child)>& visit);

}  // namespace vosmere::tool
