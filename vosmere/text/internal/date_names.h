// The English names of days, months and zones in the dates of mail and feeds, and a fast lookup.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "vosmere/base/ascii.h"

namespace vosmere {

/// Finds names by their first three letters, which are also their short form, in a perfect hash
/// table that is computed at compile time: the letters times a factor give the only slot where the
/// name can be. Comparing with one name after the other would take a third of the time of reading a
/// date.
template <std::size_t N>
class NameTable {
 public:
  constexpr NameTable(const char* const (&names)[N]) {
    std::copy_n(names, N, names_);
    // Tries factors until no two names have the same slot.
    while (!FillSlots()) factor_ += 2;
  }

  constexpr std::string_view operator[](int index) const { return names_[index]; }

  /// The index of the name that begins with these three letters, case-insensitive; -1 when there is
  /// none.
  template <class Unit>
  constexpr int Find(const Unit* letters) const {
    const std::uint32_t a = ascii::FoldLetter(letters[0]), b = ascii::FoldLetter(letters[1]),
                        c = ascii::FoldLetter(letters[2]);
    const std::uint32_t key = (a | b | c) < 0x80 ? a << 16 | b << 8 | c : 0;
    const Slot& slot = slots_[SlotOf(key)];
    return slot.key == key ? slot.index : -1;
  }

  /// The index of the name with exactly this short form, case-sensitive; -1 when there is none.
  constexpr int FindShort(std::string_view name) const {
    if (name.size() != 3) return -1;
    const std::uint32_t letters = Letters(name);
    const Slot& slot = slots_[SlotOf(letters | kLowerCase)];
    return slot.letters == letters ? slot.index : -1;
  }

 private:
  struct Slot {
    std::uint32_t letters = 1;  // no three letters have this value
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

  /// False when two names have the same slot.
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
  std::uint32_t factor_ = 0x9E3779B1;  // an arbitrary odd number to start with
  Slot slots_[1 << kSlotBits];
};

/// As in C's tm_wday: 0 is Sunday.
inline constexpr NameTable kDayNames({"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday",
                                      "Friday", "Saturday"});
inline constexpr NameTable kMonthNames({"January", "February", "March", "April", "May", "June",
                                        "July", "August", "September", "October", "November",
                                        "December"});
inline constexpr NameTable kZoneNames({"GMT", "EST", "CST", "MST", "PST", "EDT", "CDT", "MDT",
                                       "PDT"});
/// Offset of each zone in hours, negative west of Greenwich.
inline constexpr int kZoneHours[] = {0, -5, -6, -7, -8, -4, -5, -6, -7};

}  // namespace vosmere
