// The bubble sort that derived sorters call with comparisons of their own, over any chain
// (base/chain.h).
//
// Its exact result is part of the interface, and a comparison need not be transitive: the one of
// names is not. The library's own sorts give the same result faster (internal/merge_sort.h). Cells
// are relinked; what they hold is not moved.
#pragma once

#include "vosmere/base/chain.h"

namespace vosmere::chain {

/// Exchanges `cell` with its successor, which must exist. `head` follows when `cell` was the head.
template <class Cell>
void SwapWithNext(Cell* cell, Cell*& head) {
  Cell* const second = cell->next;
  Cell* const after = second->next;
  const bool wasHead = cell == head;
  if (wasHead) {
    second->prev = head->prev == second ? cell : head->prev;
    head = second;
  } else {
    second->prev = cell->prev;
    cell->prev->next = second;
  }
  second->next = cell;
  cell->prev = second;
  cell->next = after;
  (after ? after : head)->prev = cell;
}

/// Sorts the chain in place and returns whether any two cells were exchanged. `compare(a, b)` is
/// called for neighbours only; a result below 0 means that `b` belongs before `a`. Stable: cells
/// that compare equal are not exchanged. Takes quadratic time in general, linear time when the
/// chain is sorted already.
template <class Cell, class Compare>
bool BubbleSort(Cell*& head, Compare compare) {
  if (!head || head->prev == head) return false;
  bool anySwap = false;
  bool swapped = true;
  for (Cell* end = head->prev; swapped && end != head; end = end->prev) {
    swapped = false;
    for (Cell* cell = head; cell != end;) {
      if (compare(cell, cell->next) < 0) {
        // `end` marks the last position of this pass, which `cell` is about to take.
        if (cell->next == end) end = cell;
        SwapWithNext(cell, head);
        swapped = anySwap = true;
      } else {
        cell = cell->next;
      }
    }
  }
  return anySwap;
}

}  // namespace vosmere::chain
