// The contents of documents as records to be shown.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "tools/document_content.h"
#include "tools/show.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// A kind of document.
struct Kind {
  std::string_view what;  ///< its name in the output
  std::span<const Count> counts;
};

const Kind& KindOf(const AnyDocument& document);

/// The document as a record. Valid as long as the document.
Record ContentOf(const AnyDocument& document);

/// Called with an item of a document, which the document owns.
using ItemVisit = std::function<void(CBaseNode& item)>;
/// Calls `visit` for all items in document order. Some kinds of documents have none.
void ForEachItem(const AnyDocument& document, const ItemVisit& visit);

}  // namespace vosmere::tool
