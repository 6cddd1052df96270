// Expands the entities and attribute defaults of a document within limits, before the system's
// parser sees it. The parser does not do it: its own limits allow too much, it silently leaves out
// external entities that it does not open, and its versions differ in how the others appear in the
// tree.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/base/document_error.h"

namespace vosmere::win32 {

/// Throws DocumentFailure with the line and column after `before`, the part of the document without
/// an error; without a place if `before` is missing.
[[noreturn]] void Refuse(DocumentFault fault, const char* reason, std::string_view before = {});

/// Returns the document with its entity references and attribute defaults expanded; empty when
/// there are none. `text` is in an encoding that contains ASCII, and its document type declaration
/// begins at `doctype`. `*content` receives the offset after that declaration, which is the same
/// before and after the expansion. Throws DocumentFailure when the document needs an entity that it
/// does not declare itself, and when entities and defaults would expand too much.
std::string ExpandEntities(std::string_view text, std::size_t doctype, std::size_t* content);

}  // namespace vosmere::win32
