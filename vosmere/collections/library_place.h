// The addresses of collections relative to the folder of the library.
#pragma once

#include <cstddef>

#include "vosmere/base/owned_text.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Where the library is that a document's addresses lead into, so that they can be written from
/// its name on.
///
/// Intended: only the length of the path before the library counts, its characters are never
/// compared, so that a library that was moved keeps its relative addresses.
class LibraryPlace {
 public:
  /// The name is copied. Null for either turns relative addresses off.
  void Assign(const WChar* basePath, const WChar* library) {
    library_.AssignOrNull(basePath ? library : nullptr);
    baseLength_ = WideLength(basePath);
  }

  /// Where the written part of an address begins: at the library's name when that stands there and
  /// something follows it, else 0. `same` compares two views.
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
