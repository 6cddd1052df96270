// Finding the same items in two documents, and what differs.
//
// A document is a list of OutlineItem: the root first, and each item before those below it. So one
// comparison does for every kind of document; diff_trees.h makes the lists for trees.
#pragma once

#include <cstddef>
#include <string_view>

#include "vosmere/base/export.h"

namespace vosmere {

/// What it takes to find an item in another document. Texts are compared byte for byte, in any
/// encoding, and must stay valid; an empty one counts as none.
struct OutlineItem {
  std::size_t parent =
      0;              ///< the index of the item that it is in, less than its own; 0 for the root
  unsigned kind = 0;  ///< items of different kinds are never the same
  std::string_view identity = {};
  std::string_view address = {};
  std::string_view name = {};
  std::string_view text = {};  ///< of what two sides have added, in place of a missing address
};

/// In place of the index of an item that is not there.
inline constexpr std::size_t kNoItem = static_cast<std::size_t>(-1);

/// How an item differs, as bits.
enum Difference : unsigned {
  kIsAdded = 1,
  kIsRemoved = 2,
  kIsMoved = 4,  ///< to another folder, or to another place among its siblings
  kIsRenamed = 8,
  kIsChanged = 16,  ///< in other fields
};

/// An item that differs. One that was renamed, moved and changed at the same time is one entry.
struct ItemDifference {
  unsigned what;  ///< bits of Difference
  std::size_t a;  ///< the indexes, kNoItem where it is not there
  std::size_t b;
};

/// The comparison of the other fields of an item, and what receives the differences. Both may throw
/// std::bad_alloc.
class VOSMERE_API DiffHandler {
 public:
  virtual ~DiffHandler();
  /// Whether fields other than the name differ between an item of `a` and the same one of `b`.
  virtual bool FieldsDiffer(std::size_t a, std::size_t b) = 0;
  virtual void Report(const ItemDifference& difference) = 0;
};

/// Reports every item that differs: those removed in the order of `a`, then all others in the order
/// of `b`. The roots are the same item. Others are found by their identity, then by their address,
/// first in the same folder and then anywhere, then by their name in the same folder; of several
/// alike, the first belongs to the first. Among siblings as few as possible count as moved.
///
/// Time and memory grow with the number of items. Throws std::bad_alloc.
VOSMERE_API void DiffItems(const OutlineItem* a, std::size_t countA, const OutlineItem* b,
                           std::size_t countB, DiffHandler& handler);

}  // namespace vosmere
