// What the sorters have in common.
#pragma once

#include "vosmere/base/chain_sort.h"
#include "vosmere/base/list.h"
#include "vosmere/tree/sort_order.h"

namespace vosmere {

class Sorter {
 protected:
  /// Takes two items and the parameter of the sort; below zero means that `b` belongs before `a`.
  using Compare = int (*)(void* a, void* b, void* parameter);

  static int CompareNoCase(const WChar* a, const WChar* b) { return CompareTextNoCase(a, b); }
  static int CompareValue(LONG a, LONG b) { return CompareNumber(a, b); }
};

/// The steps of a sorter of lists. The items that it compares are the cells' data, which are
/// pointers.
template <class Datum>
class ListSorter : protected Sorter {
 protected:
  /// True when any two cells were exchanged.
  bool BubbleSort(TList<Datum>** head, Compare compare, void* parameter) {
    return chain::BubbleSort(*head, [=](TList<Datum>* a, TList<Datum>* b) {
      return compare(a->data, b->data, parameter);
    });
  }

  void SwapWithNext(TList<Datum>* cell, TList<Datum>** head) { chain::SwapWithNext(cell, *head); }
};

}  // namespace vosmere
