// The paths of listed items, to find those that are listed already.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "vosmere/base/internal/keyed_hash.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// A set of paths that are owned elsewhere. Paths that differ only in the case of ASCII letters are
/// the same. The slots lie side by side, because the items that own the paths are so large that
/// nodes between them would each be on a page of their own.
class PathSet {
 public:
  /// False when the set has the path already. Throws std::bad_alloc, with nothing changed.
  bool Add(const WChar* path) {
    if (2 * count_ >= slots_.size()) Grow();
    const std::uint64_t hash = Hash(path);
    std::size_t at = hash & Mask();
    for (; slots_[at].path; at = (at + 1) & Mask())
      if (slots_[at].hash == hash && IsSame(slots_[at].path, path)) return false;
    slots_[at] = {hash, path};
    ++count_;
    return true;
  }

 private:
  struct Slot {
    std::uint64_t hash = 0;
    const WChar* path = nullptr;
  };

  static std::uint64_t Hash(const WChar* path) {
    const std::uint64_t* const secret = HashSecret();
    std::uint64_t hash = secret[0];
    for (WideView rest(path); !rest.empty(); rest = rest.From(4)) {
      std::uint64_t units = 0;
      std::memcpy(&units, rest.data, rest.First(4).size * sizeof(WChar));
      constexpr std::uint64_t kCase = 0x0020'0020'0020'0020;  // of letters; the rest only collide
      hash = MultiplyAndFold(hash ^ (units | kCase), secret[1]);
    }
    return hash;
  }

  static bool IsSame(const WChar* a, const WChar* b) {
    return SameText(a, b) || SameTextNoCase(a, b);  // most have the same case
  }

  std::size_t Mask() const { return slots_.size() - 1; }
  void Grow() {
    std::vector<Slot> old(slots_.empty() ? 64 : 4 * slots_.size());
    old.swap(slots_);
    for (const Slot& slot : old) {
      if (!slot.path) continue;
      std::size_t at = slot.hash & Mask();
      while (slots_[at].path) at = (at + 1) & Mask();
      slots_[at] = slot;
    }
  }

  std::vector<Slot> slots_;  // a power of two
  std::size_t count_ = 0;
};

}  // namespace vosmere
