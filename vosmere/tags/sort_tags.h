#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/sorter.h"

namespace vosmere {

/// Sorts a list of tags by name in place, by relinking its cells. Holds no data.
class VOSMERE_API CSortRTagItem : protected ListSorter<CTagItem*> {
 public:
  CSortRTagItem() = default;
  virtual ~CSortRTagItem();

  /// Takes the head of the list, which may be null, and returns the new head. Ascending puts A
  /// before B. Equal names keep their order; they compare as in CSortRNode (sort_node.h).
  TList<CTagItem*>* Sort(TList<CTagItem*>* head, bool ascending);

 protected:
  /// `key` points at an int (null means 0): name 0; tags are equal by any other key.
  static int CompareNameAsc(void* a, void* b, void* key);
  static int CompareNameDes(void* a, void* b, void* key);
};

}  // namespace vosmere
