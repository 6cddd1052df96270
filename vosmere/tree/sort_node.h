// Sorts the links of a chain by name, time or order.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/sorter.h"

namespace vosmere {

/// Sorts a chain of links in place by relinking. Has no state; may be used on any thread.
///
/// Every sort takes the head of the chain, which may be null, and returns the new head. The caller
/// stores it; for children that is the parent's `firstChild`. Stable. The result is that of a
/// bubble sort, also where the name comparison is not transitive.
///
/// Intended: names are compared case-insensitively (ASCII) over the length of the first name only,
/// so a name equals every name that begins with it, but not the other way round.
class VOSMERE_API CSortRNode : protected Sorter {
 public:
  CSortRNode() = default;
  virtual ~CSortRNode();

  /// Intended: these four put larger names and later times first; `invert` puts them last.
  RNode* Sort(RNode* head, bool invert);
  RNode* SortByCreateTime(RNode* head, bool invert);
  RNode* SortByModifyTime(RNode* head, bool invert);
  RNode* SortByVisitTime(RNode* head, bool invert);

  /// Intended: the stored order is compared with itself and so never decides, and both directions
  /// sort names from Z to A. Users know their menus in this order.
  RNode* SortByOrder(RNode* head, bool ascending);

 protected:
  /// Returns whether any two links were exchanged. `invert` reverses the result of `compare`.
  bool BubbleSort(RNode** head, Compare compare, void* parameter, bool invert);
  void SwapWithNext(RNode* link, RNode** head);

  /// `column` points at an int: 0 compares names, 1 the times when the items were added, 2
  /// modified, 3 last visited; in any other column items are equal. A null `column` means 0.
  static int CompareItemByCol(void* a, void* b, void* column);
  static int CompareByOrderAsc(void* a, void* b, void* parameter);
  static int CompareByOrderDes(void* a, void* b, void* parameter);
};

}  // namespace vosmere
