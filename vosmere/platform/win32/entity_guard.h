// What a document's own declarations stand for, written out, within bounds. The system's parser is
// asked for none of it: its bounds let too much through, it leaves out in silence what it does not
// open, and systems differ in what of the rest reaches the tree.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/base/document_error.h"

namespace vosmere::win32 {

/// Throws DocumentFailure, with the place behind `before`, the part of the document that is fine.
[[noreturn]] void Refuse(DocumentFault fault, const char* reason, std::string_view before = {});

/// The document with its entity references and attribute defaults written out; empty when there are
/// none. `text` is in an encoding that keeps ASCII, and its document type declaration stands at
/// `doctype`; `*content` is where its content begins, before and after. Throws DocumentFailure when
/// it needs an entity that it does not declare itself, and when entities and defaults would expand
/// out of proportion.
std::string ExpandEntities(std::string_view text, std::size_t doctype, std::size_t* content);

}  // namespace vosmere::win32
