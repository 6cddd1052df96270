// The characters of a plain document's values.
#pragma once

#include <string_view>

#include "vosmere/platform/posix/xml/arena.h"

namespace vosmere::posix {

enum class PlainValue {
  kText,       ///< with references; "]]>" is not allowed
  kAttribute,  ///< with references; white space becomes blanks, "<" is not allowed
  kLiteral,    ///< as it stands, but for its line ends
};

/// What the piece of a document means. False when it has characters or references that only the
/// parser may judge. Throws std::bad_alloc.
bool ReadPlainValue(XmlArena& arena, std::string_view piece, PlainValue kind, XmlValue* value);

}  // namespace vosmere::posix
