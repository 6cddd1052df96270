// Reads bookmark files, as browsers export them.
#pragma once

#include <string_view>

#include "vosmere/fwd.h"
#include "vosmere/import/internal/repair_list.h"

namespace vosmere::importing {

/// Whether the beginning of a document is that of a bookmark file: it says so, or it is HTML.
bool IsBookmarkFile(std::string_view bytes);

/// Reads a bookmark file in UTF-8: folders, pages and feeds with their names, addresses, times,
/// tags and descriptions, in their order. Saved searches and separators are left out and reported.
/// The caller frees the tree with DeleteTree. Throws std::bad_alloc.
RNode* ReadBookmarkFile(std::string_view text, RepairList& repairs);

}  // namespace vosmere::importing
