// Makes a well-formed document of one that is damaged.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/import/internal/repair_list.h"

namespace vosmere::importing {

/// A well-formed document with what is whole of `text`, which is UTF-8 without control characters.
/// Elements that are open at the end, or at an end tag that crosses them, are closed; what stands
/// between tags and cannot be markup becomes text. Comments, instructions and the document type are
/// left out. References to characters that XML does not know are replaced, and so are those to the
/// document's own entities (ExpandedText). Outlines are fixed as FixOutline does it; those outside
/// the body stay only if there are no others. Takes time and memory in proportion to the text, and
/// to 4 MiB for its entities.
std::string MakeWellFormed(std::string_view text, RepairList& repairs);

}  // namespace vosmere::importing
