// What the program holds in heap memory, by its own count.
#pragma once

#include <cstddef>

namespace vosmere::bench {

/// Counts every heap allocation of the program, libraries included, while it lives. One at a time.
class HeapCount {
 public:
  HeapCount();
  ~HeapCount();
  HeapCount(const HeapCount&) = delete;
  HeapCount& operator=(const HeapCount&) = delete;

  /// The most bytes held at once beyond those held at the start, as the allocator rounds them.
  std::size_t peak() const;
  /// How many blocks were asked for.
  std::size_t allocations() const;
};

}  // namespace vosmere::bench
