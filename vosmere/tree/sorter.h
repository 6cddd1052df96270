// The base classes of all sorters.
#pragma once

#include "vosmere/base/chain_sort.h"
#include "vosmere/base/list.h"
#include "vosmere/tree/sort_order.h"

namespace vosmere {

/// Gives the sorters' compare functions their type and their two comparisons.
class Sorter {
 protected:
  /// Compares two items; `parameter` is the one that was given to the sort. A negative result means
  /// that `b` belongs before `a`.
  using Compare = int (*)(void* a, void* b, void* parameter);

  static int CompareNoCase(const WChar* a, const WChar* b) { return CompareTextNoCase(a, b); }
  static int CompareValue(LONG a, LONG b) { return CompareNumber(a, b); }
};

/// Base of the sorters of lists, whose compare functions get the data of the cells. A datum is a
/// pointer.
template <class Datum>
class ListSorter : protected Sorter {
 protected:
  /// Returns whether any two cells were exchanged.
  bool BubbleSort(TList<Datum>** head, Compare compare, void* parameter) {
    return chain::BubbleSort(*head, [=](TList<Datum>* a, TList<Datum>* b) {
      return compare(a->data, b->data, parameter);
    });
  }

  void SwapWithNext(TList<Datum>* cell, TList<Datum>** head) { chain::SwapWithNext(cell, *head); }
};

}  // namespace vosmere
