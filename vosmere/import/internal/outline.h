// Outlines as they are in the field, made into those that the reader of trees knows.
#pragma once

#include "vosmere/import/internal/repair_list.h"
#include "vosmere/import/internal/tokens.h"

namespace vosmere::importing {

/// Gives the known attributes of an outline, in any case, their usual names.
void NameAttributes(Token& outline, RepairList* repairs);

/// Changes the attributes of an outline, which have different names:
/// - A feed (with an address in xmlUrl, or with the type of a feed and a url) gets the type "rss".
/// - A page (with the type of a link, or with no type but a url or nothing else than an htmlUrl)
///   gets the type "link" and a url.
/// - A title that differs from the text is left out, and so are blanks around addresses.
/// Returns false for a saved search, which is to be left out.
bool FixOutline(Token& outline, RepairList* repairs);

}  // namespace vosmere::importing
