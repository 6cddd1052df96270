// Finds the same items in two outlines or three.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vosmere/base/internal/keyed_hash.h"
#include "vosmere/merge/match_items.h"

namespace vosmere {

/// The same number for the same text, counted from 1; 0 for the empty one. Texts must stay valid.
class TextNumbers {
 public:
  std::uint32_t NumberOf(std::string_view text);

 private:
  struct Entry {
    std::string_view text;
    std::uint64_t hash;
  };
  std::uint32_t& SlotFor(std::string_view text, std::uint64_t hash);
  void Grow();

  std::vector<Entry> entries_;
  std::vector<std::uint32_t> slots_;  // numbers by their hashes, a power of two of them; 0 is free
};

/// Puts the items of a base and of its sides together that are the same.
class ItemMatcher {
 public:
  using Outline = std::span<const OutlineItem>;

  /// The base first, which may be empty, then one side or two. The outlines must outlive the
  /// matcher. Their roots are the same item.
  explicit ItemMatcher(std::initializer_list<Outline> sides);

  /// What two sides have added each for itself is matched more carefully: only by identity, or in
  /// the same folder by address, and by name what has no address.
  void Match();

  /// The number of the item, less than GroupCount; the same items have the same.
  std::size_t GroupOf(std::size_t side, std::size_t item) const { return groupOf_[side][item]; }
  std::size_t GroupCount() const { return groups_.size(); }
  /// The same item in another side; kNoItem if it is not there.
  std::size_t Partner(std::size_t side, std::size_t item, std::size_t in) const {
    return groups_[groupOf_[side][item]].at[in];
  }

 private:
  static constexpr std::size_t kMostSides = 3;
  struct Group {
    std::size_t at[kMostSides] = {kNoItem, kNoItem, kNoItem};
  };
  struct Texts {
    std::uint32_t identity, address, text, name;
  };
  /// What both items must have in common, and whether they must have no address. `kNotAdded` is not
  /// used where the base has neither.
  enum Common : unsigned {
    kFolder = 1,
    kIdentity = 2,
    kAddress = 4,
    kName = 8,
    kNoAddress = 16,
    kNotAdded = 32
  };
  struct Key {
    std::uint32_t folder, kind, first, name;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };
  /// Two sides that are compared; the third is the other one.
  struct Sides {
    std::size_t a, b;
    std::size_t third() const { return kMostSides - a - b; }
  };

  bool KeyOf(unsigned common, Sides sides, std::size_t side, std::size_t item, Key* key) const;
  bool MatchSides(unsigned common, Sides sides);
  bool MatchAll(unsigned common);
  bool IsIn(std::size_t side, std::size_t item, std::size_t in) const {
    return Partner(side, item, in) != kNoItem;
  }
  void Join(Sides sides, std::size_t a, std::size_t b);

  std::vector<Outline> sides_;
  std::vector<Group> groups_;
  std::vector<std::uint32_t> groupOf_[kMostSides];
  TextNumbers numbers_;
  std::vector<Texts> texts_[kMostSides];
};

}  // namespace vosmere
