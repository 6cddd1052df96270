// The doubly linked chain that all lists and trees of the library use.
//
// A chain consists of cells with the members `prev` and `next`. The `prev` of the head is the last
// cell, and a cell that is alone is its own `prev`; every other `prev` is the preceding cell. The
// `next` of the last cell is null. So the last cell is one step away from the head, and a cell is
// the head exactly when its `prev` has no `next`.
//
// A null head is an empty chain. Where a function takes a `Cell*&`, it changes the caller's head.
// Other pointers must not be null unless the comment says so. Nothing here allocates, frees or
// throws.
#pragma once

namespace vosmere::chain {

/// Makes `cell` a chain of its own. Its former neighbours are not changed.
template <class Cell>
void Reset(Cell* cell) {
  cell->prev = cell;
  cell->next = nullptr;
}

/// Whether `cell` is the first of its chain. Works without knowing the head.
template <class Cell>
bool IsHead(const Cell* cell) {
  return !cell->prev->next;
}

/// The first cell of the chain that `cell` is in. Walks back, so it takes linear time.
template <class Cell>
Cell* FindHead(Cell* cell) {
  while (!IsHead(cell)) cell = cell->prev;
  return cell;
}

/// The last cell, in constant time; null for a null head.
template <class Cell>
Cell* Last(Cell* head) {
  return head ? head->prev : nullptr;
}

/// Adds `cell` at the end, in constant time.
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

/// Adds `cell` at the front; it becomes the head.
template <class Cell>
void Prepend(Cell*& head, Cell* cell) {
  cell->next = head;
  cell->prev = head ? head->prev : cell;
  if (head) head->prev = cell;
  head = cell;
}

/// Appends all cells of the chain that starts with `tail`, in constant time. A null `tail` changes
/// nothing.
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

/// Inserts `cell` directly after `reference`, which is in the chain that starts with `head`. The
/// head is needed only when `reference` is the last cell; otherwise it may be null.
template <class Cell>
void InsertAfter(Cell* head, Cell* reference, Cell* cell) {
  cell->prev = reference;
  cell->next = reference->next;
  (reference->next ? reference->next : head)->prev = cell;
  reference->next = cell;
}

/// Inserts `cell` directly before `reference`. Returns true when `reference` was the head: `cell`
/// is the head now, and the caller, who keeps the head, must store it.
template <class Cell>
bool InsertBefore(Cell* reference, Cell* cell) {
  const bool wasHead = IsHead(reference);
  cell->prev = reference->prev;
  cell->next = reference;
  if (!wasHead) reference->prev->next = cell;
  reference->prev = cell;
  return wasHead;
}

/// Takes `cell` out of the chain and makes it a chain of its own. Returns true exactly when it was
/// the head; `head` is then the next cell, or null.
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

/// The cells in order, for a range-based for loop. An iterator reads `next` before it hands out the
/// cell, so the loop may unlink or free the current cell, but not the one after it.
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

/// The first cell for which `test(cell)` is true, or null.
template <class Cell, class Test>
Cell* Find(Cell* head, Test test) {
  for (Cell* cell = head; cell; cell = cell->next)
    if (test(cell)) return cell;
  return nullptr;
}

}  // namespace vosmere::chain
