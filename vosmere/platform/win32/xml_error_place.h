// Finds the place and the reason of an error in a document, for a DOM that reports neither.
#pragma once

#include <string_view>

#include "vosmere/base/document_error.h"
#include "vosmere/base/types.h"

namespace vosmere::win32 {

/// Stores `reason` as one line of UTF-8, without a full stop.
void SetReason(DocumentError* error, const WChar* reason);

/// Stores the line, column, element and reason of the error that the system's SAX reader finds in
/// `bytes`. The fault becomes kTooDeep if more than `deepest` levels are the reason. When the
/// reader finds no error or does not exist, the place is the end of the document.
void FindErrorPlace(std::string_view bytes, int deepest, DocumentError* error);

}  // namespace vosmere::win32
