// Reads the text and attribute values of a plain document.
#pragma once

#include <string_view>

#include "vosmere/platform/posix/xml/arena.h"

namespace vosmere::posix {

/// What a value may contain.
enum class PlainValue {
  kText,       ///< with references, without "]]>"
  kAttribute,  ///< with references, without "<"; white space becomes blanks
  kLiteral,    ///< unchanged except for its line ends
};

/// Converts a piece of a document to a value. False when it contains characters or references that
/// only libxml2 may decide about. Throws std::bad_alloc.
bool ReadPlainValue(XmlArena& arena, std::string_view piece, PlainValue kind, XmlValue* value);

}  // namespace vosmere::posix
