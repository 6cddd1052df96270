// NumberMap, a small and fast hash table from numbers to numbers.
#pragma once

#include <cstdint>
#include <vector>

namespace vosmere {

/// Keys and values are not 0. Grows by doubling; an entry takes 16 bytes, and at most three of four
/// places are taken.
class NumberMap {
 public:
  std::size_t size() const { return size_; }

  /// 0 for none.
  std::uint64_t Find(std::uint64_t key) const {
    if (slots_.empty()) return 0;
    for (std::size_t at = Home(key);; at = Next(at))
      if (slots_[at].key == key || slots_[at].key == 0) return slots_[at].value;
  }
  void Set(std::uint64_t key, std::uint64_t value) {
    if ((size_ + 1) * 4 > slots_.size() * 3) Grow();
    Slot& slot = SlotFor(key);
    size_ += slot.key == 0;
    slot = {key, value};
  }
  void Erase(std::uint64_t key) {
    if (slots_.empty()) return;
    std::size_t hole = Home(key);
    for (; slots_[hole].key != key; hole = Next(hole))
      if (slots_[hole].key == 0) return;
    --size_;
    for (std::size_t at = Next(hole); slots_[at].key != 0; at = Next(at)) {
      const std::size_t home = Home(slots_[at].key);
      const std::size_t mask = slots_.size() - 1;
      if (((at - home) & mask) < ((at - hole) & mask)) continue;  // it would stand before its home
      slots_[hole] = slots_[at];
      hole = at;
    }
    slots_[hole] = {};
  }
  template <class Use>
  void ForEach(Use use) const {
    for (const Slot& slot : slots_)
      if (slot.key) use(slot.key, slot.value);
  }

 private:
  struct Slot {
    std::uint64_t key = 0;
    std::uint64_t value = 0;
  };

  std::size_t Home(std::uint64_t key) const {
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15u) >> 32) & (slots_.size() - 1);
  }
  std::size_t Next(std::size_t at) const { return (at + 1) & (slots_.size() - 1); }
  Slot& SlotFor(std::uint64_t key) {
    std::size_t at = Home(key);
    while (slots_[at].key != 0 && slots_[at].key != key) at = Next(at);
    return slots_[at];
  }
  void Grow() {
    std::vector<Slot> old(slots_.empty() ? 64 : slots_.size() * 2);
    old.swap(slots_);
    for (const Slot& slot : old)
      if (slot.key) SlotFor(slot.key) = slot;
  }

  std::vector<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace vosmere
