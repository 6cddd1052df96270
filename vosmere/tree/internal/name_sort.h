// Sorts a chain by name, with the result of a bubble sort in the time of a merge sort.
//
// Names are compared without regard to ASCII case over the length of the first one only
// (sort_order.h). From A to Z that is an order: a name goes before those that begin with it. From Z
// to A it is not even transitive, since a name then equals all that begin with it and all that it
// begins with. A bubble sort never takes a name past its own beginning, so the names that begin
// with "ab" are sorted apart before, between and after the copies of "ab":
//
//     aba ab abc abd   gives   aba ab abd abc
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/ascii.h"
#include "vosmere/base/chain.h"
#include "vosmere/base/internal/merge_sort.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Where two names differ without regard to ASCII case: their folded units there, 0 at the end of a
/// name. Null is the empty name.
struct NameDifference {
  int first, second;

  NameDifference(const WChar* a, const WChar* b) {
    static constexpr WChar empty[1] = {0};
    if (!a) a = empty;
    if (!b) b = empty;
    for (; (first = ascii::Fold(*a)) == (second = ascii::Fold(*b)) && first != 0; ++a, ++b) {
    }
  }
  bool FirstIsBeginning() const { return first == 0; }  // also true if both are equal
  bool AreEqual() const { return first == second; }
};

/// Sorts from A to Z. `nameOf(cell)` is the name of a cell; the head may be null.
template <class Cell, class NameOf>
void SortNamesUp(Cell*& head, NameOf nameOf) {
  chain::MergeSort(head, [=](Cell* a, Cell* b) {
    const NameDifference names(nameOf(a), nameOf(b));
    return names.first < names.second;
  });
}

/// Sorts from Z to A in two steps: first with every name before those that begin with it, then each
/// such group by where the copies of that name were. Until the end, `prev` holds the cell's
/// original position, and whether its group is done.
template <class Cell, class NameOf>
class DescendingNameSort {
 public:
  DescendingNameSort(Cell*& head, NameOf nameOf) : nameOf_(nameOf) {
    if (!head) return;
    std::uintptr_t place = 0;
    for (Cell* cell = head; cell; cell = cell->next) Set(cell, place += kStep);
    head = chain::MergeByNext(head, [this](Cell* a, Cell* b) {
      const NameDifference names = Compare(a, b);
      return names.FirstIsBeginning() ? !names.AreEqual()
                                      : names.second != 0 && names.first > names.second;
    });
    for (Cell** at = &head; *at;) at = ArrangeGroup(at);
    chain::RestorePrev(head);
  }

 private:
  static constexpr std::uintptr_t kDone = 1, kStep = 2;

  static void Set(Cell* cell, std::uintptr_t state) { cell->prev = reinterpret_cast<Cell*>(state); }
  static std::uintptr_t State(const Cell* cell) {
    return reinterpret_cast<std::uintptr_t>(cell->prev);
  }
  NameDifference Compare(Cell* a, Cell* b) const { return {nameOf_(a), nameOf_(b)}; }

  /// Arranges the group of the name at `at`. Returns where to continue: at the same place if there
  /// are groups within this one.
  Cell** ArrangeGroup(Cell** at) const {
    Cell* const first = *at;
    if (State(first) & kDone) return &first->next;
    Cell* lastCopy = first;
    std::size_t copies = 1;
    while (lastCopy->next && Compare(first, lastCopy->next).AreEqual()) {
      lastCopy = lastCopy->next;
      ++copies;
    }
    Cell* last = lastCopy;
    while (last->next && Compare(first, last->next).FirstIsBeginning()) last = last->next;
    if (last == lastCopy) return &last->next;

    Cell* const rest = last->next;
    Cell* const longer = lastCopy->next;
    last->next = lastCopy->next = nullptr;
    for (Cell* copy = first; copy; copy = copy->next) Set(copy, State(copy) | kDone);
    *Place(at, first, copies, longer) = rest;
    return at;
  }

  /// Writes `count` copies of a name to `*end`, with the names that begin with it before, between
  /// and after them, according to their original positions. Returns the new end. Halves the copies,
  /// so that many longer names among many copies do not take quadratic time.
  static Cell** Place(Cell** end, Cell* copies, std::size_t count, Cell* longer) {
    if (count == 0 || !longer) return Append(Append(end, copies, count), longer, SIZE_MAX);
    Cell* middle = copies;
    for (std::size_t i = 0; i < count / 2; ++i) middle = middle->next;
    Cell* before = nullptr;
    Cell* after = nullptr;
    Cell** endBefore = &before;
    Cell** endAfter = &after;
    for (; longer; longer = longer->next) {
      Cell**& part = State(longer) < State(middle) ? endBefore : endAfter;
      *part = longer;
      part = &longer->next;
    }
    *endBefore = *endAfter = nullptr;
    Cell* const following = middle->next;
    end = Append(Place(end, copies, count / 2, before), middle, 1);
    return Place(end, following, count - count / 2 - 1, after);
  }

  /// Appends up to `count` cells, and returns the new end.
  static Cell** Append(Cell** end, Cell* cells, std::size_t count) {
    for (; cells && count > 0; cells = cells->next, --count) {
      *end = cells;
      end = &cells->next;
    }
    return end;
  }

  NameOf nameOf_;
};

template <class Cell, class NameOf>
void SortNamesDown(Cell*& head, NameOf nameOf) {
  DescendingNameSort<Cell, NameOf>(head, nameOf);
}

}  // namespace vosmere
