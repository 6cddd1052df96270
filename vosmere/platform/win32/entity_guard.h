// Bounds on what a document's declarations may expand to, checked before the system's parser sees
// it: the parser's own bounds let much through, and it leaves out in silence what it does not open.
#pragma once

#include <string_view>

#include "vosmere/base/wide_view.h"

namespace vosmere::win32 {

/// Throws DocumentFailure for a document whose text needs an entity that it does not declare
/// itself, or whose entities and attribute defaults would expand out of proportion. A document
/// without a document type declaration costs a look at its first bytes.
void GuardEntities(std::string_view bytes);
void GuardEntities(WideView text);

}  // namespace vosmere::win32
