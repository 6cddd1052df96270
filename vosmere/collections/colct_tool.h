// Operations on lists of collections.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/collections/colct_item.h"

namespace vosmere {

/// Merges lists of collections and removes collections from them. Addresses are compared
/// case-sensitively; a null address equals an empty one. Time and memory grow linearly with the
/// lists. When memory runs out, the result is the same, but the time grows quadratically.
class VOSMERE_API CRColctTool {
 public:
  CRColctTool() = default;
  virtual ~CRColctTool();

  /// Whether merging copies the network settings, identity, base build and checked-in state of the
  /// old collection to the new one. False by default.
  void SetKeepOldColctNetData(bool keep) { keepOldColctNetData_ = keep; }

  /// Merges a newly read list with the old one. A new collection with the address of an old one is
  /// marked and takes over its local tree; a tree that it had before is not freed. Old collections
  /// whose address is not in the new list move from the old list to the end of `*removedList` (null
  /// or a chain), which the caller owns. If the old list is empty, `*removedList` is set to null
  /// and false is returned.
  /// Intended: returns whether the cell that was unlinked last was the head of the old list at that
  /// moment; false when none was unlinked.
  bool UpdateRColctItemList(RColctItem* newList, RColctItem** oldList, RColctItem** removedList);

  /// Frees every cell whose address occurs earlier in the list, with its collection. Returns
  /// whether any was freed. The head always stays.
  /// Intended: "Duplcate" for "Duplicate"; existing programs use this name.
  bool DeleteDuplcateColct(RColctItem* list);

  /// Frees every cell with this address, with its collection. Returns whether any was freed; false
  /// for a null address. `url` may be the address of one of the collections.
  bool DeleteColctByUrl(RColctItem** list, const WChar* url);

 private:
  bool keepOldColctNetData_ = false;
};

}  // namespace vosmere
