// What differs between two trees, item by item.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/merge/match_items.h"
#include "vosmere/merge/tree_parts.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// An item that differs; `what` are bits of Difference.
struct TreeDifference {
  unsigned what;
  const RNode* before;  ///< null for one that was added
  const RNode* after;   ///< null for one that was removed
};
using TreeDifferenceReport = void (*)(void* to, const TreeDifference& difference);

/// Reports every item that differs, as DiffItems does; the name of a root counts, too. Null is a
/// tree without items. Links without an item are left out, with all below them.
///
/// Fields that documents do not keep do not count: the order, which is that of the links, the words
/// for the program, and the state of loading. A time that one of the two was not given
/// (CNodeStat::GetSetTimes) does not count either. Null is the same as the empty text.
///
/// The report may throw. Throws std::bad_alloc.
VOSMERE_API void DiffTrees(const RNode* a, const RNode* b, TreeParts parts,
                           TreeDifferenceReport report, void* to);

/// A field that differs. The values are UTF-8 for the user and live until the report returns.
struct FieldDifference {
  const char* field;  ///< its name, such as "description"
  const char* before;
  const char* after;
};
using FieldDifferenceReport = void (*)(void* to, const FieldDifference& difference);

/// Reports every field that differs, of those that the types of both items have, the name included.
/// Neither link may be null or without an item. The report may throw. Throws std::bad_alloc.
VOSMERE_API void DiffFields(const RNode* before, const RNode* after, FieldDifferenceReport report,
                            void* to);

}  // namespace vosmere
