// The one list shape of the library.
//
// A chain is a row of cells with `prev` and `next`: the head's `prev` is the last cell, a lone
// cell's `prev` is itself, every other `prev` is the cell before, and the last cell's `next` is
// null. So the last cell is one step from the head, and a cell is the head exactly when its `prev`
// has no `next`. Tree links, list cells and name/value pairs are all cells of this shape; a null
// head is an empty chain. Nothing here allocates or frees.
#pragma once

namespace vosmere::chain {

template <class Cell>
void Reset(Cell* cell) {
  cell->prev = cell;
  cell->next = nullptr;
}

template <class Cell>
bool IsHead(const Cell* cell) {
  return !cell->prev->next;
}

template <class Cell>
Cell* FindHead(Cell* cell) {
  while (!IsHead(cell)) cell = cell->prev;
  return cell;
}

template <class Cell>
Cell* Last(Cell* head) {
  return head ? head->prev : nullptr;
}

template <class Cell>
void Append(Cell*& head, Cell* cell) {
  cell->next = nullptr;
  if (!head) {
    cell->prev = cell;
    head = cell;
    return;
  }
  cell->prev = head->prev;
  head->prev->next = cell;
  head->prev = cell;
}

template <class Cell>
void Prepend(Cell*& head, Cell* cell) {
  cell->next = head;
  cell->prev = head ? head->prev : cell;
  if (head) head->prev = cell;
  head = cell;
}

/// Appends the whole chain `tail`, which may be empty.
template <class Cell>
void AppendChain(Cell*& head, Cell* tail) {
  if (!tail) return;
  if (!head) {
    head = tail;
    return;
  }
  Cell* const last = tail->prev;
  tail->prev = head->prev;
  head->prev->next = tail;
  head->prev = last;
}

/// `reference` is in the chain of `head`.
template <class Cell>
void InsertAfter(Cell* head, Cell* reference, Cell* cell) {
  cell->prev = reference;
  cell->next = reference->next;
  (reference->next ? reference->next : head)->prev = cell;
  reference->next = cell;
}

/// `reference` may be the head of a chain whose owner is elsewhere; true when it was, and `cell` is
/// the head now.
template <class Cell>
bool InsertBefore(Cell* reference, Cell* cell) {
  const bool wasHead = IsHead(reference);
  cell->prev = reference->prev;
  cell->next = reference;
  if (!wasHead) reference->prev->next = cell;
  reference->prev = cell;
  return wasHead;
}

/// Takes `cell` out and leaves it alone in a chain of its own. True exactly when it was the head,
/// in which case `head` is the next cell or null.
template <class Cell>
bool Unlink(Cell*& head, Cell* cell) {
  const bool wasHead = cell == head;
  if (cell->next)
    cell->next->prev = cell->prev;
  else if (!wasHead)
    head->prev = cell->prev;
  if (wasHead)
    head = cell->next;
  else
    cell->prev->next = cell->next;
  Reset(cell);
  return wasHead;
}

/// The cells in order. The step to the next cell is taken before the current one is handed out, so
/// a loop may unlink or free the cell it was given.
template <class Cell>
class Cells {
 public:
  explicit Cells(Cell* head) : head_(head) {}

  class Iterator {
   public:
    explicit Iterator(Cell* cell) : cell_(cell), next_(cell ? cell->next : nullptr) {}
    Cell* operator*() const { return cell_; }
    Iterator& operator++() { return *this = Iterator(next_); }
    bool operator!=(const Iterator& other) const { return cell_ != other.cell_; }

   private:
    Cell* cell_;
    Cell* next_;
  };

  Iterator begin() const { return Iterator(head_); }
  Iterator end() const { return Iterator(nullptr); }

 private:
  Cell* head_;
};

/// The first cell that satisfies `test`, or null.
template <class Cell, class Test>
Cell* Find(Cell* head, Test test) {
  for (Cell* cell = head; cell; cell = cell->next)
    if (test(cell)) return cell;
  return nullptr;
}

}  // namespace vosmere::chain
