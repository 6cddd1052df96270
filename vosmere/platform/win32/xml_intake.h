// Checks a document before the system's parser sees it.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/platform/win32/xml_units.h"

namespace vosmere::win32 {

/// Whether there is a document type declaration before the root element. Reads no further than
/// that.
bool HasDoctype(const XmlUnits& document);

/// For a document without a document type declaration. Throws DocumentFailure when an element has
/// too many attributes: the parser compares each with all others, which would take practically for
/// ever.
void BoundAttributes(const XmlUnits& document);

/// Does the same for bytes in any encoding. If they have a document type declaration, it returns
/// the result of ExpandEntities (entity_guard.h), which is to be parsed instead. Empty when the
/// bytes may be parsed as they are.
std::string Admit(std::string_view bytes);

/// For bytes that the parser has accepted. Throws DocumentFailure when they contain a null, which
/// the parser may take for the end, or end in half a code unit.
void CheckEnd(std::string_view bytes);

}  // namespace vosmere::win32
