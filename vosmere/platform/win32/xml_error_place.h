// Where and why a document is malformed, for a DOM that refuses it without a word.
#pragma once

#include <string_view>

#include "vosmere/base/document_error.h"
#include "vosmere/base/types.h"

namespace vosmere::win32 {

/// Stores `reason` as one line of UTF-8, without a full stop.
void SetReason(DocumentError* error, const WChar* reason);

/// Stores line, column and reason of the error that the system's SAX reader finds in `bytes`; the
/// fault becomes kTooDeep when nesting is the reason. The end of the document is the place when
/// that reader finds nothing or does not exist.
void FindErrorPlace(std::string_view bytes, DocumentError* error);

}  // namespace vosmere::win32
