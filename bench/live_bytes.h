// Counting the heap memory of the program.
#pragma once

#include <cstddef>

namespace vosmere::bench {

/// Counts every heap allocation of the program, including those of libraries, during its lifetime.
/// Only one object may exist at a time.
class HeapCount {
 public:
  HeapCount();
  ~HeapCount();
  HeapCount(const HeapCount&) = delete;
  HeapCount& operator=(const HeapCount&) = delete;

  /// The largest number of bytes in use at once since the start, as rounded by the allocator.
  std::size_t peak() const;
  /// The number of allocations.
  std::size_t allocations() const;
};

}  // namespace vosmere::bench
