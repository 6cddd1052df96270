// What documents hold, as records to be shown.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "tools/document_content.h"
#include "tools/show.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

struct Kind {
  std::string_view what;  ///< for people
  std::span<const Count> counts;
};

const Kind& KindOf(const AnyDocument& document);

/// As long as the document is there.
Record ContentOf(const AnyDocument& document);

/// Is shown an item of a document, which stays the document's.
using ItemVisit = std::function<void(CBaseNode& item)>;
/// Shows all items in document order, if there are any.
void ForEachItem(const AnyDocument& document, const ItemVisit& visit);

}  // namespace vosmere::tool
