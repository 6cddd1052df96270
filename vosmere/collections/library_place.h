// Making the addresses in a document relative to a library.
#pragma once

#include <cstddef>

#include "vosmere/base/owned_text.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// The place of a library, the folder that a document's addresses point into. Addresses inside it
/// are written relative, beginning with the library's name.
///
/// Intended: only the length of the path before the library matters, its characters are never
/// compared, so that a library that was moved keeps its relative addresses.
class LibraryPlace {
 public:
  /// Sets the path before the library and the library's name, which is copied. Null for either
  /// turns relative addresses off.
  void Assign(const WChar* basePath, const WChar* library) {
    library_.AssignOrNull(basePath ? library : nullptr);
    baseLength_ = WideLength(basePath);
  }

  /// The index at which the written part of an address begins: at the library's name if it is there
  /// and more text follows it, else 0. `same` compares two views.
  template <class Same>
  std::size_t StartIn(WideView address, Same same) const {
    const WideView library(library_.get());
    if (!library.data || baseLength_ + library.size >= address.size) return 0;
    return same(address.From(baseLength_).First(library.size), library) ? baseLength_ : 0;
  }

 private:
  HeapText library_;
  std::size_t baseLength_ = 0;
};

}  // namespace vosmere
