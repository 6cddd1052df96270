// A piece of memory on its way into a file.
#pragma once

#include <cstddef>

namespace vosmere {

/// A piece of memory to write. The caller owns it.
struct FilePiece {
  const void* data;
  std::size_t size;
};

}  // namespace vosmere
