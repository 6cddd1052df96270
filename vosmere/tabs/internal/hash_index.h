// An index of a hash table's entries by their whole keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "vosmere/base/wide_view.h"

namespace vosmere {

struct CHashData;

/// Finds entries that are owned elsewhere in constant time, whatever their keys are: it hashes a
/// key together with numbers that every process draws anew, so nobody can prepare keys that
/// collide. A few entries are not hashed but compared in turn, which is faster.
class HashIndex {
 public:
  HashIndex();

  /// Makes room for one more entry. Throws std::bad_alloc, with nothing changed.
  void Reserve();
  /// Adds an entry whose key is new, in the room that was reserved.
  void Add(CHashData* entry);
  /// The entry of a key, or null.
  CHashData* Find(WideView key) const;
  /// Removes an entry that is in the index.
  void Remove(const CHashData* entry);
  void Clear();

  std::size_t size() const { return size_; }

 private:
  // Linear probing in `capacity_` slots, a power of two. At most two thirds of them are taken.
  struct Slot {
    const WChar* key = nullptr;  // that of the entry, so that the entry itself need not be read
    CHashData* entry = nullptr;
    std::uint64_t hash = 0;  // a sample of the key as long as there are few entries
  };

  bool IsSmall() const { return capacity_ <= kSmallCapacity; }
  std::uint64_t Hash(WideView key) const;
  std::size_t Home(std::uint64_t hash) const { return static_cast<std::size_t>(hash) & mask_; }
  std::size_t Next(std::size_t slot) const { return (slot + 1) & mask_; }

  static constexpr std::size_t kSmallCapacity = 8;

  const std::uint64_t* secret_;
  std::unique_ptr<Slot[]> slots_;
  std::size_t capacity_ = 0, mask_ = 0, size_ = 0;
};

}  // namespace vosmere
