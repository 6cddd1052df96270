// Sorts lists of tags by name.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/sorter.h"

namespace vosmere {

/// Sorts a list of tags in place by relinking its cells. Has no state; may be used on any thread.
class VOSMERE_API CSortRTagItem : protected ListSorter<CTagItem*> {
 public:
  CSortRTagItem() = default;
  virtual ~CSortRTagItem();

  /// Takes the head of the list, which may be null, and returns the new head. Ascending order is A
  /// before B. Stable. Names are compared as in CSortRNode (sort_node.h).
  TList<CTagItem*>* Sort(TList<CTagItem*>* head, bool ascending);

 protected:
  /// Compare functions for the base class. `key` points at an int: 0 compares names, and by any
  /// other key tags are equal. A null `key` means 0.
  static int CompareNameAsc(void* a, void* b, void* key);
  static int CompareNameDes(void* a, void* b, void* key);
};

}  // namespace vosmere
