// Pairs the items of two outlines.
#pragma once

#include <cstdint>
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

class ItemMatcher {
 public:
  using Outline = std::span<const OutlineItem>;

  /// The roots are paired. The outlines must outlive the matcher.
  ItemMatcher(Outline a, Outline b);

  /// Fixes a pair; or, where one is kNoItem, takes the other one out.
  void Pair(std::size_t a, std::size_t b);
  /// Pairs the items of two states of one document.
  void MatchStates();
  /// Pairs items that two sides have added each for itself, more carefully: only by identity, or
  /// in the same folder by address, and by name what has no address.
  void MatchAdditions();

  /// kNoItem for one without a partner.
  std::size_t InB(std::size_t a) const { return inB_[a].Partner(); }
  std::size_t InA(std::size_t b) const { return inA_[b].Partner(); }

 private:
  struct State {
    std::size_t partner = kNoItem;
    bool isFree = true;
    std::size_t Partner() const { return partner; }
  };
  struct Texts {
    std::uint32_t identity, address, name;
  };
  /// What both items must have in common, and whether they must have no address.
  enum Common : unsigned { kFolder = 1, kIdentity = 2, kAddress = 4, kName = 8, kNoAddress = 16 };
  struct Key {
    std::uint32_t folder, kind, first, name;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };

  void Number(Outline outline, std::vector<Texts>& texts);
  bool KeyOf(unsigned common, const OutlineItem& item, const Texts& texts, std::size_t folder,
             Key* key) const;
  void Match(unsigned common);

  Outline a_, b_;
  TextNumbers numbers_;
  std::vector<Texts> textsA_, textsB_;
  std::vector<State> inB_, inA_;
};

}  // namespace vosmere
