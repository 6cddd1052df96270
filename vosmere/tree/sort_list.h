// Sorts lists of items by name or by the time of the last visit.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/sorter.h"

namespace vosmere {

/// Sorts a list of items in place by relinking its cells. Has no state; may be used on any thread.
///
/// Both functions take the head of the list, which may be null, and return the new head. Ascending
/// order is A before B and earlier before later. Stable. Names are compared as in CSortRNode
/// (sort_node.h).
class VOSMERE_API CSortRList : protected ListSorter<CBaseNode*> {
 public:
  CSortRList() = default;
  virtual ~CSortRList();

  TList<CBaseNode*>* Sort(TList<CBaseNode*>* head, bool ascending);
  TList<CBaseNode*>* SortByVisitTime(TList<CBaseNode*>* head, bool ascending);

 protected:
  /// Compare functions for the base class. `key` points at an int: 0 compares names, 1 the times of
  /// the last visit, and by any other key items are equal. A null `key` means 0.
  static int CompareNameAsc(void* a, void* b, void* key);
  static int CompareNameDes(void* a, void* b, void* key);
};

}  // namespace vosmere
