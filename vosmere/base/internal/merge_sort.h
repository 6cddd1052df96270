// A stable merge sort of chains (base/chain.h) that allocates nothing.
#pragma once

#include "vosmere/base/chain.h"

namespace vosmere::chain {

/// Takes the longest run off the front of `rest`: cells that are already in order, or that are all
/// in the opposite order, which is then reversed.
template <class Cell, class Before>
Cell* TakeRun(Cell*& rest, Before isBefore) {
  Cell *run = rest, *last = rest, *next = rest->next;
  if (next && isBefore(next, run)) {
    for (; next && isBefore(next, run); next = last->next) {
      last->next = next->next;
      next->next = run;
      run = next;
    }
  } else {
    for (; next && !isBefore(next, last); next = next->next) last = next;
  }
  rest = next;
  last->next = nullptr;
  return run;
}

/// Merges two sorted runs; of equal cells those of `first` come first.
template <class Cell, class Before>
Cell* Merge(Cell* first, Cell* second, Before isBefore) {
  Cell* head = nullptr;
  Cell** end = &head;
  while (first && second) {
    Cell*& next = isBefore(second, first) ? second : first;
    *end = next;
    end = &next->next;
    next = next->next;
  }
  *end = first ? first : second;
  return head;
}

/// Sorts using only the `next` links and leaves every `prev` as it is. `isBefore(a, b)` is a strict
/// weak order. Takes one pass when the cells are in that order or the opposite one.
template <class Cell, class Before>
Cell* MergeByNext(Cell* head, Before isBefore) {
  constexpr int kSlots = 64;
  Cell* merged[kSlots] = {};  // slot i holds 2^i runs, or none
  int used = 0;
  while (head) {
    Cell* runs = TakeRun(head, isBefore);
    int slot = 0;
    for (; slot < used && merged[slot]; ++slot) {
      runs = Merge(merged[slot], runs, isBefore);
      merged[slot] = nullptr;
    }
    merged[slot] = runs;
    if (slot == used) ++used;
  }
  Cell* all = nullptr;
  for (int slot = 0; slot < used; ++slot) all = Merge(merged[slot], all, isBefore);
  return all;
}

/// Sets every `prev` by the `next` links.
template <class Cell>
void RestorePrev(Cell* head) {
  Cell* last = nullptr;
  for (Cell* cell = head; cell; cell = cell->next) {
    cell->prev = last;
    last = cell;
  }
  if (head) head->prev = last;
}

/// Sorts a chain in place; the head may be null. Equal cells stay as they are.
template <class Cell, class Before>
void MergeSort(Cell*& head, Before isBefore) {
  if (!head) return;
  head = MergeByNext(head, isBefore);
  RestorePrev(head);
}

}  // namespace vosmere::chain
