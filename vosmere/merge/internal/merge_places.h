// Where the items of a merged tree come to be.
#pragma once

#include "vosmere/merge/internal/merge_fields.h"

namespace vosmere {

/// Decides for each item in which folder it comes to be, and whether it stays at all.
///
/// A move that only one side has made is made; of two, that of the newer item. Both may be fine
/// alone and make a circle together, a folder below its own child. Then the oldest move of the
/// circle is not made, as in the move operation for replicated trees (Kleppmann and others, 2021),
/// where the last writer wins and a move that would close a circle is left out.
void DecidePlaces(MergeTable& table, FieldMerge& fields);

}  // namespace vosmere
