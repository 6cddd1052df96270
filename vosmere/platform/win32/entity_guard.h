// What a document's own declarations stand for, written out, within bounds. The system's parser is
// asked for none of it: its bounds let too much through, it leaves out in silence what it does not
// open, and systems differ in what of the rest reaches the tree.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/base/wide_view.h"

namespace vosmere::win32 {

/// Whether a document type declaration stands before the root element. Looks no further.
bool HasDoctype(WideView text);

/// The document with its entity references and attribute defaults written out; empty when there are
/// none. Throws DocumentFailure when its text needs an entity that it does not declare itself, and
/// when entities and defaults would expand out of proportion. Without a document type declaration
/// this costs a look at the first bytes.
std::string ExpandEntities(std::string_view bytes);

}  // namespace vosmere::win32
