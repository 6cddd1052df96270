#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/favorites/order_record.h"

namespace vosmere {

/// An item of one level of the Favorites folder, in a singly linked list. Who has the list owns it
/// and frees it with DeleteList.
struct VOSMERE_API CFavorite {
  /// Units of the longest path, its terminating zero included.
  static constexpr int kNameLimit = 260;

  WChar name[kNameLimit] = {};  ///< the full path, which need not be well-formed text (path.h)
  LONG isFile = 0;              ///< 0 for a folder
  HeapText url{HeapTextStorage::Empty()};  ///< where a shortcut leads; empty when not resolved
  CFavorite* next = nullptr;
  OwnedPointer<COrderRecord> orderRecord;  ///< null for what only the directory named

  /// An empty item, or null when memory runs out.
  static CFavorite* New();
  /// Frees every item from `head` on. Null is ignored.
  static void DeleteList(CFavorite* head);

  /// Looks for an item of that name from this one on, without regard to ASCII case: 1, and it is
  /// stored in `*last`, or 0, and the last item of the list is.
  /// Intended: the spelling; programs know it by this name.
  int FindOccurence(const WChar* name, CFavorite** last);

  /// Gives the item a new order record of default values in place of the one it has; null, with
  /// the old one kept, when memory runs out. The item owns it.
  COrderRecord* CreateOrderRecord();
  /// Null for none.
  COrderRecord* GetOrderRecord() const { return orderRecord.get(); }

  CFavorite(const CFavorite&) = delete;
  CFavorite& operator=(const CFavorite&) = delete;

 protected:
  CFavorite() = default;
  ~CFavorite() = default;
};

}  // namespace vosmere
