// Finds the first character that makes a document malformed.
#pragma once

#include <cstddef>

#include "vosmere/platform/win32/xml_units.h"

namespace vosmere::win32 {

/// In place of a position.
inline constexpr std::size_t kNoErrorFound = static_cast<std::size_t>(-1);

/// The position at which the parser on Linux stops in a document without a document type
/// declaration; kNoErrorFound for an error that this does not look for. A reader that gets its
/// document piece by piece only finds the tag or the text.
std::size_t FirstError(const XmlUnits& document);

}  // namespace vosmere::win32
