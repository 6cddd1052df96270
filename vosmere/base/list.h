// The generic list: cells that each hold one datum, and the operations that are not in
// base/chain.h.
#pragma once

#include <new>
#include <type_traits>
#include <utility>

#include "vosmere/base/chain.h"

namespace vosmere {

/// One cell of a list of `T`, linked as in base/chain.h. The owner of the list frees the cells and
/// their data: when `T` is a pointer, the destructor does not free what it points at.
template <class T>
struct TList {
  TList* prev = this;
  TList* next = nullptr;
  T data;

  explicit TList(T datum) : data(std::move(datum)) {}
  TList(const TList&) = delete;
  TList& operator=(const TList&) = delete;
  virtual ~TList() = default;

  /// A cell that is not in any list; null when memory runs out. The caller owns it.
  static TList* New(T datum) { return new (std::nothrow) TList(std::move(datum)); }
};

namespace list {

/// The datum of a cell of any kind: the member `item` of cells that are not a TList, otherwise
/// `data`.
template <class Cell>
auto& Datum(Cell& cell) {
  if constexpr (requires { cell.item; })
    return cell.item;
  else
    return cell.data;
}

/// Appends a new cell for `datum` and returns it. Null when memory runs out; nothing is changed
/// then.
template <class T>
TList<T>* Append(TList<T>*& head, std::type_identity_t<T> datum) {
  TList<T>* const cell = TList<T>::New(std::move(datum));
  if (cell) chain::Append(head, cell);
  return cell;
}

/// Unlinks and frees the first cell whose datum equals `datum`. The datum itself is not freed.
/// False when there is no such cell.
template <class T>
bool Remove(TList<T>*& head, const std::type_identity_t<T>& datum) {
  TList<T>* const cell = chain::Find(head, [&](TList<T>* c) { return c->data == datum; });
  if (!cell) return false;
  chain::Unlink(head, cell);
  delete cell;
  return true;
}

/// Frees every cell from `head` on, after calling `free(data)` for its datum. Null is ignored.
template <class T, class Free>
void Delete(TList<T>* head, Free free) {
  for (TList<T>* cell : chain::Cells(head)) {
    free(cell->data);
    delete cell;
  }
}

/// Frees every cell from `head` on with its item, by the static `Delete` of the item's class. Null
/// is ignored.
template <class Cell>
void DeleteItems(Cell* head) {
  for (Cell* cell : chain::Cells(head)) {
    std::remove_pointer_t<std::remove_reference_t<decltype(Datum(*cell))>>::Delete(Datum(*cell));
    delete cell;
  }
}

}  // namespace list
}  // namespace vosmere
