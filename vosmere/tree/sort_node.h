#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/sorter.h"

namespace vosmere {

/// Sorts a sibling chain of links in place, by relinking. Holds no data.
///
/// Every sort takes the head of the chain, which may be null, and returns the new head; the caller
/// stores it, for children as the parent's `firstChild`. Links that compare equal keep their order.
/// The result is that of a bubble sort, also where the name comparison is not transitive.
///
/// Intended: names compare over the length of the first alone, so a name counts as equal to every
/// name that it is the beginning of, but not the other way round.
class VOSMERE_API CSortRNode : protected Sorter {
 public:
  CSortRNode() = default;
  virtual ~CSortRNode();

  /// Intended: the column sorts put larger names and later times first; `invert` puts them last.
  RNode* Sort(RNode* head, bool invert);
  RNode* SortByCreateTime(RNode* head, bool invert);
  RNode* SortByModifyTime(RNode* head, bool invert);
  RNode* SortByVisitTime(RNode* head, bool invert);

  /// Intended: the stored order is compared with itself and never decides, and both directions give
  /// names from Z to A. Users' menus have come out this way from the start.
  RNode* SortByOrder(RNode* head, bool ascending);

 protected:
  /// True when any two links were exchanged.
  bool BubbleSort(RNode** head, Compare compare, void* parameter, bool invert);
  void SwapWithNext(RNode* link, RNode** head);

  /// `column` points at an int (null means 0): name 0, added 1, modified 2, last visited 3; items
  /// are equal in any other column.
  static int CompareItemByCol(void* a, void* b, void* column);
  static int CompareByOrderAsc(void* a, void* b, void* parameter);
  static int CompareByOrderDes(void* a, void* b, void* parameter);
};

}  // namespace vosmere
