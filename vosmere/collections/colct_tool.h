// Merging and thinning out lists of collections.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/collections/colct_item.h"

namespace vosmere {

/// Merges lists of collections and removes from them. Addresses compare exactly, letter case
/// included; a null address compares as the empty one. Time and memory grow linearly with the
/// lists; when there is no memory the results are the same, and time grows with the square.
class VOSMERE_API CRColctTool {
 public:
  CRColctTool() = default;
  virtual ~CRColctTool();

  /// Whether merging carries the old network side, identity, base build and checked-in state over
  /// to the new collection. Off at first.
  void SetKeepOldColctNetData(bool keep) { keepOldColctNetData_ = keep; }

  /// Merges a freshly read list with the old one. A new collection with the address of an old one
  /// is marked and takes over its local tree; old collections without a new one move from the old
  /// list to the end of `*removedList` (null or a chain), which the caller owns. With an
  /// empty old list the removed list becomes empty and the answer is false.
  /// Intended: the answer is whether the cell unlinked last was the head of the old list at that
  /// moment; false when none was unlinked.
  bool UpdateRColctItemList(RColctItem* newList, RColctItem** oldList, RColctItem** removedList);

  /// Frees every cell, with its collection, whose address came up earlier in the list. True when
  /// any was freed.
  /// Intended: the spelling; programs know it by this name.
  bool DeleteDuplcateColct(RColctItem* list);

  /// Frees every cell, with its collection, that has this address. True when any was freed. A null
  /// address is ignored.
  bool DeleteColctByUrl(RColctItem** list, const WChar* url);

 private:
  bool keepOldColctNetData_ = false;
};

}  // namespace vosmere
