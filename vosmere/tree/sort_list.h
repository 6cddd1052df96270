#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/sorter.h"

namespace vosmere {

/// Sorts a list of items in place, by relinking its cells. Holds no data.
///
/// Both sorts take the head of the list, which may be null, and return the new head. Ascending puts
/// A before B and earlier before later. Items that compare equal keep their order; names compare as
/// in CSortRNode (sort_node.h).
class VOSMERE_API CSortRList : protected ListSorter<CBaseNode*> {
 public:
  CSortRList() = default;
  virtual ~CSortRList();

  TList<CBaseNode*>* Sort(TList<CBaseNode*>* head, bool ascending);
  TList<CBaseNode*>* SortByVisitTime(TList<CBaseNode*>* head, bool ascending);

 protected:
  /// `key` points at an int (null means 0): name 0, last visited 1; items are equal by any other
  /// key.
  static int CompareNameAsc(void* a, void* b, void* key);
  static int CompareNameDes(void* a, void* b, void* key);
};

}  // namespace vosmere
