// The English names in the dates of mail and feeds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <type_traits>

namespace vosmere {

/// Lower case for letters. Nothing else becomes a letter.
template <class Unit>
constexpr std::uint32_t Folded(Unit unit) {
  return static_cast<std::make_unsigned_t<Unit>>(unit) | 0x20u;
}

/// Names that are found by their first three letters, which are also their short form. The letters
/// multiplied give the one slot where the name can be. Comparing name after name would be a third
/// of the time that a date takes.
template <std::size_t N>
class NameTable {
 public:
  constexpr NameTable(const char* const (&names)[N]) {
    std::copy_n(names, N, names_);
    while (!FillSlots()) factor_ += 2;
  }

  constexpr std::string_view operator[](int index) const { return names_[index]; }

  /// The index by three letters in any case; -1 when there is none.
  template <class Unit>
  constexpr int Find(const Unit* letters) const {
    const std::uint32_t a = Folded(letters[0]), b = Folded(letters[1]), c = Folded(letters[2]);
    const std::uint32_t key = (a | b | c) < 0x80 ? a << 16 | b << 8 | c : 0;
    const Slot& slot = slots_[SlotOf(key)];
    return slot.key == key ? slot.index : -1;
  }

  /// The index by the short form, case and all.
  constexpr int FindShort(std::string_view name) const {
    if (name.size() != 3) return -1;
    const std::uint32_t letters = Letters(name);
    const Slot& slot = slots_[SlotOf(letters | kLowerCase)];
    return slot.letters == letters ? slot.index : -1;
  }

 private:
  struct Slot {
    std::uint32_t letters = 1;  // not letters
    std::uint32_t key = 1;      // the letters in lower case
    int index = -1;
  };
  static constexpr int kSlotBits = 5;
  static constexpr std::uint32_t kLowerCase = 0x202020;

  static constexpr std::uint32_t Letters(std::string_view name) {
    const auto byte = [&](int i) { return std::uint32_t{static_cast<unsigned char>(name[i])}; };
    return byte(0) << 16 | byte(1) << 8 | byte(2);
  }
  constexpr std::uint32_t SlotOf(std::uint32_t key) const {
    return key * factor_ >> (32 - kSlotBits);
  }

  /// False when two names would share a slot.
  constexpr bool FillSlots() {
    std::fill(std::begin(slots_), std::end(slots_), Slot{});
    for (std::size_t i = 0; i < N; ++i) {
      const std::uint32_t letters = Letters(names_[i]);
      Slot& slot = slots_[SlotOf(letters | kLowerCase)];
      if (slot.index >= 0) return false;
      slot = {letters, letters | kLowerCase, static_cast<int>(i)};
    }
    return true;
  }

  std::string_view names_[N];
  std::uint32_t factor_ = 0x9E3779B1;  // any odd number with bits all over may come first
  Slot slots_[1 << kSlotBits];
};

/// 0 is Sunday.
inline constexpr NameTable kDayNames({"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday",
                                      "Friday", "Saturday"});
inline constexpr NameTable kMonthNames({"January", "February", "March", "April", "May", "June",
                                        "July", "August", "September", "October", "November",
                                        "December"});
inline constexpr NameTable kZoneNames({"GMT", "EST", "CST", "MST", "PST", "EDT", "CDT", "MDT",
                                       "PDT"});
/// East of Greenwich, for each zone.
inline constexpr int kZoneHours[] = {0, -5, -6, -7, -8, -4, -5, -6, -7};

}  // namespace vosmere
