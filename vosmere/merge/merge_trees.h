// Making one tree of two that have been changed independently.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/merge/tree_parts.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// Something that both sides have changed, each in another way. Texts are UTF-8 for the user. All
/// live until the report returns; the links as long as their trees.
struct MergeConflict {
  const RNode* merged;  ///< the item in the merged tree
  const RNode* ours;    ///< null where it was removed
  const RNode* theirs;
  const char* what;  ///< the name of a field, "folder", "deleted" or "removal"
  const char* oursText;
  const char* theirsText;
  bool tookTheirs;
};
using MergeConflictReport = void (*)(void* to, const MergeConflict& conflict);

/// A new tree with the changes of both sides since `base`, the tree that both have started from.
/// Without it (null) nothing counts as removed: the tree has what either side has.
///
/// Which items are the same: those of the base as in DiffItems, on each side or on one as the other
/// has left them; what both sides have added, by identity, or in the same folder by address, or by
/// name for what has no address. A page without an address has its text instead. So nothing that a
/// side has added is lost.
///
/// - A change that one side has made to a field is made, and so is a move to another folder.
/// - Where both have changed the same thing, the newer item wins: the one with the newer version,
///   else with the newer time, else ours. Such conflicts are reported with both sides. Tags are
///   merged one by one; of times and counters the later one wins, of `added` the earlier.
/// - What one side has removed, or marked as deleted, is removed or marked, unless the other side
///   has changed or moved it, or something in it, or has put something into it. Then it stays,
///   which is reported.
/// - Moves that would put a folder below itself: the oldest of them is not made, and reported.
/// - Items that are in the same folder on both sides keep the order that the one side has given
///   them that has changed it, else that of ours. Others come after what they follow on their side.
/// - No two items have the same identity; of several the first keeps it.
/// - A time that only one side states is kept.
///
/// So merging the same side again changes nothing, a side that is equal to the base gives the
/// other, and exchanging the sides changes the order of siblings and the winners at most, those of
/// items that are equally new.
///
/// Without identities, merging again changes nothing as long as no two items have ever had the same
/// address, or the same name in one folder, and none was renamed on one side and lost its address
/// on the other. More cannot be promised: if the base has an item once, ours twice, alike, and
/// theirs has none, the merged tree has it once, as the base does; and then a side that is equal to
/// the base has to give the other.
///
/// The merged tree is made of copies, which the caller owns. Null if the roots are of different
/// types; if one side is null, a copy of the other. The roots count as the same item; a base with
/// a root of another type is not used. Links without an item are left out, with all below them.
/// With TreeParts::kLinks, collections in the tree have no local trees. The report may be null, and
/// may throw. Throws std::bad_alloc, with nothing made.
VOSMERE_API RNode* MergeTrees(const RNode* base, const RNode* ours, const RNode* theirs,
                              TreeParts parts, MergeConflictReport report, void* to);

/// Whether a side can have started from `base`, and so be merged with it: at least one identity is
/// in both, and every item that is in both by its identity has the same base build. Throws
/// std::bad_alloc.
VOSMERE_API bool CanHaveStartedFrom(const RNode* base, const RNode* side, TreeParts parts);

}  // namespace vosmere
