#pragma once

#include <new>
#include <utility>

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

}  // namespace vosmere
