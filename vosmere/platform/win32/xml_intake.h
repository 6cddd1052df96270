// What is looked at before the system's parser sees a document.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/platform/win32/xml_units.h"

namespace vosmere::win32 {

/// Whether a document type declaration stands before the root element. Looks no further.
bool HasDoctype(const XmlUnits& document);

/// For a document without such a declaration. Throws DocumentFailure when an element has so many
/// attributes that the parser, which compares each with each, would not come back.
void BoundAttributes(const XmlUnits& document);

/// Does the same for bytes in any encoding and, when they have a document type declaration, returns
/// what ExpandEntities (entity_guard.h) makes of them. Empty when the bytes may be parsed as they
/// are.
std::string Admit(std::string_view bytes);

/// For bytes that the parser takes. Throws DocumentFailure when they hold a zero, which it may take
/// for the end, or end in half a unit.
void CheckEnd(std::string_view bytes);

}  // namespace vosmere::win32
