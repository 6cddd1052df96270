// CFavorite, an item of the Favorites folder, in a linked list.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/favorites/order_record.h"

namespace vosmere {

/// An item of one level of the Favorites folder, in a singly linked list. The holder of the list
/// owns its items and frees them with DeleteList.
struct VOSMERE_API CFavorite {
  /// The longest path in code units, including the terminating null.
  static constexpr int kNameLimit = 260;

  WChar name[kNameLimit] = {};             ///< full path, maybe with unpaired surrogates (path.h)
  LONG isFile = 0;                         ///< nonzero for a file, 0 for a folder
  HeapText url{HeapTextStorage::Empty()};  ///< target of a shortcut; empty if not resolved
  /// The next item; null at the end of the list.
  CFavorite* next = nullptr;
  OwnedPointer<COrderRecord> orderRecord;  ///< null if only the directory named the item

  /// An empty item, which the caller frees with DeleteList. Null when memory runs out.
  static CFavorite* New();
  /// Frees `head` and all items after it. Null is ignored.
  static void DeleteList(CFavorite* head);

  /// Searches from this item on for an item with that name; the comparison is case-insensitive
  /// (ASCII). Returns 1 and stores the item in `*last`, or returns 0 and stores the last item of
  /// the list.
  /// Intended: the spelling of the name; existing programs use it.
  int FindOccurence(const WChar* name, CFavorite** last);

  /// Replaces the item's order record by a new one with default values and returns it. The item
  /// owns it. Null, with the old record kept, when memory runs out.
  COrderRecord* CreateOrderRecord();
  /// The item's order record, which the item owns; null when it has none.
  COrderRecord* GetOrderRecord() const { return orderRecord.get(); }

  CFavorite(const CFavorite&) = delete;
  CFavorite& operator=(const CFavorite&) = delete;

 protected:
  CFavorite() = default;
  ~CFavorite() = default;
};

}  // namespace vosmere
