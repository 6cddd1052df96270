#pragma once

#include <new>
#include <type_traits>
#include <utility>

#include "vosmere/base/chain.h"

namespace vosmere {

/// One cell of a list of `T`, a chain in the shape of base/chain.h. The list's owner frees cells
/// and data: destroying a cell does not free a datum that is a pointer.
template <class T>
struct TList {
  TList* prev = this;
  TList* next = nullptr;
  T data;

  explicit TList(T datum) : data(std::move(datum)) {}
  TList(const TList&) = delete;
  TList& operator=(const TList&) = delete;
  virtual ~TList() = default;

  /// Null when memory runs out.
  static TList* New(T datum) { return new (std::nothrow) TList(std::move(datum)); }
};

namespace list {

/// What a cell of any kind of list holds.
template <class Cell>
auto& Datum(Cell& cell) {
  if constexpr (requires { cell.item; })
    return cell.item;
  else
    return cell.data;
}

/// Appends a new cell for `datum` and returns it; null, with nothing changed, when memory runs out.
template <class T>
TList<T>* Append(TList<T>*& head, std::type_identity_t<T> datum) {
  TList<T>* const cell = TList<T>::New(std::move(datum));
  if (cell) chain::Append(head, cell);
  return cell;
}

/// Unlinks and frees the first cell that holds `datum`, not the datum; false when there is none.
template <class T>
bool Remove(TList<T>*& head, const std::type_identity_t<T>& datum) {
  TList<T>* const cell = chain::Find(head, [&](TList<T>* c) { return c->data == datum; });
  if (!cell) return false;
  chain::Unlink(head, cell);
  delete cell;
  return true;
}

/// Frees every cell from `head` on, and its datum with `free`.
template <class T, class Free>
void Delete(TList<T>* head, Free free) {
  for (TList<T>* cell : chain::Cells(head)) {
    free(cell->data);
    delete cell;
  }
}

/// Frees every cell from `head` on with its datum, for data whose class has a `Delete`.
template <class Cell>
void DeleteItems(Cell* head) {
  for (Cell* cell : chain::Cells(head)) {
    std::remove_pointer_t<std::remove_reference_t<decltype(Datum(*cell))>>::Delete(Datum(*cell));
    delete cell;
  }
}

}  // namespace list
}  // namespace vosmere
