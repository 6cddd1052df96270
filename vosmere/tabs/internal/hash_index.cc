// An index of a hash table's entries by their whole keys.
#include "vosmere/tabs/internal/hash_index.h"

#include <cstring>
#include <utility>

#include "vosmere/base/internal/keyed_hash.h"
#include "vosmere/tabs/hash_table.h"

namespace vosmere {
namespace {

std::uint64_t FourUnits(const WChar* units) {
  std::uint64_t word;
  std::memcpy(&word, units, sizeof word);
  return word;
}

/// Up to three units.
std::uint64_t LastUnits(const WChar* units, std::size_t count) {
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < count; ++i) word = word << 16 | units[i];
  return word;
}

/// The length with code units from the start, the middle and the end: enough to distinguish a few
/// keys.
std::uint64_t Sample(WideView key) {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  if (key.size < 4) return LastUnits(key.data, key.size) * kOdd + key.size;
  const WChar* const end = key.data + key.size;
  return (FourUnits(key.data) * kOdd ^ FourUnits(key.data + (key.size - 4) / 2)) * kOdd +
         FourUnits(end - 4) + key.size;
}

}  // namespace

HashIndex::HashIndex() : secret_(HashSecret()) {}

std::uint64_t HashIndex::Hash(WideView key) const {
  if (IsSmall()) return Sample(key);
  std::uint64_t hash = secret_[0] ^ key.size;
  const WChar* units = key.data;
  std::size_t left = key.size;
  for (; left >= 8; units += 8, left -= 8)
    hash = MultiplyAndFold(FourUnits(units) ^ secret_[1], FourUnits(units + 4) ^ hash);
  if (left < 4) return MultiplyAndFold(secret_[1], LastUnits(units, left) ^ hash);
  return MultiplyAndFold(FourUnits(units) ^ secret_[1], LastUnits(units + 4, left - 4) ^ hash);
}

void HashIndex::Reserve() {
  if (capacity_ && (IsSmall() ? size_ < capacity_ : 3 * (size_ + 1) <= 2 * capacity_)) return;
  HashIndex larger;
  larger.capacity_ = !capacity_ ? kSmallCapacity : capacity_ * (IsSmall() ? 4 : 2);
  larger.mask_ = larger.capacity_ - 1;
  larger.slots_.reset(new Slot[larger.capacity_]);
  for (std::size_t i = 0; i < capacity_; ++i)
    if (slots_[i].entry) larger.Add(slots_[i].entry);
  std::swap(*this, larger);
}

void HashIndex::Add(CHashData* entry) {
  const std::uint64_t hash = Hash(entry->Key());
  std::size_t at = IsSmall() ? size_ : Home(hash);
  while (slots_[at].entry) at = Next(at);
  slots_[at] = {entry->key.get(), entry, hash};
  ++size_;
}

CHashData* HashIndex::Find(WideView key) const {
  const auto isKey = [key](const Slot& slot) {
    return SysStringLen(slot.key) == key.size &&
           std::memcmp(slot.key, key.data, key.size * sizeof(WChar)) == 0;
  };
  const std::uint64_t hash = Hash(key);
  if (IsSmall()) {
    for (std::size_t at = 0; at < size_; ++at)
      if (slots_[at].hash == hash && isKey(slots_[at])) return slots_[at].entry;
    return nullptr;
  }
  for (std::size_t at = Home(hash); slots_[at].entry; at = Next(at))
    if (slots_[at].hash == hash && isKey(slots_[at])) return slots_[at].entry;
  return nullptr;
}

// The entries after the gap move up, unless their home slots come after it, so that no search ends
// early.
void HashIndex::Remove(const CHashData* entry) {
  std::size_t hole = IsSmall() ? 0 : Home(Hash(entry->Key()));
  while (slots_[hole].entry != entry) hole = Next(hole);
  --size_;
  if (IsSmall()) {
    slots_[hole] = slots_[size_];
    slots_[size_] = {};
    return;
  }
  for (std::size_t at = Next(hole); slots_[at].entry; at = Next(at)) {
    const std::size_t fromHome = (at - Home(slots_[at].hash)) & mask_;
    if (fromHome < ((at - hole) & mask_)) continue;
    slots_[hole] = slots_[at];
    hole = at;
  }
  slots_[hole] = {};
}

void HashIndex::Clear() {
  *this = HashIndex();
}

}  // namespace vosmere
