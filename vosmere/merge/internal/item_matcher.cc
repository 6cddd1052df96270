#include "vosmere/merge/internal/item_matcher.h"

#include <cstring>

namespace vosmere {

static std::uint64_t HashOf(std::string_view text) {
  const std::uint64_t* const secret = HashSecret();
  std::uint64_t hash = secret[0] ^ text.size();
  for (; !text.empty(); text.remove_prefix(text.size() < 8 ? text.size() : 8)) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), text.size() < 8 ? text.size() : 8);
    hash = MultiplyAndFold(hash ^ word, secret[1]);
  }
  return hash;
}

std::uint32_t& TextNumbers::SlotFor(std::string_view text, std::uint64_t hash) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    if (slots_[at] == 0) return slots_[at];
    const Entry& entry = entries_[slots_[at] - 1];
    if (entry.hash == hash && entry.text == text) return slots_[at];
  }
}

void TextNumbers::Grow() {
  std::vector<std::uint32_t>(slots_.empty() ? 16 : slots_.size() * 2).swap(slots_);
  for (std::uint32_t i = 0; i < entries_.size(); ++i)
    SlotFor(entries_[i].text, entries_[i].hash) = i + 1;
}

std::uint32_t TextNumbers::NumberOf(std::string_view text) {
  if (text.empty()) return 0;
  if (entries_.size() * 2 >= slots_.size()) Grow();
  const std::uint64_t hash = HashOf(text);
  std::uint32_t& number = SlotFor(text, hash);
  if (number == 0) {
    entries_.push_back({text, hash});
    number = static_cast<std::uint32_t>(entries_.size());
  }
  return number;
}

std::size_t ItemMatcher::KeyHash::operator()(const Key& key) const {
  const std::uint64_t* const secret = HashSecret();
  const auto both = [](std::uint32_t high, std::uint32_t low) {
    return std::uint64_t{high} << 32 | low;
  };
  return static_cast<std::size_t>(
      MultiplyAndFold(MultiplyAndFold(both(key.folder, key.kind) ^ secret[0], secret[1]) ^
                          both(key.first, key.name),
                      secret[1]));
}

ItemMatcher::ItemMatcher(std::initializer_list<Outline> sides) : sides_(sides) {
  for (std::size_t side = 0; side < sides_.size(); ++side) {
    texts_[side].reserve(sides_[side].size());
    groupOf_[side].reserve(sides_[side].size());
    for (const OutlineItem& item : sides_[side]) {
      texts_[side].push_back({numbers_.NumberOf(item.identity), numbers_.NumberOf(item.address),
                              numbers_.NumberOf(item.text), numbers_.NumberOf(item.name)});
      groups_.emplace_back().at[side] = groupOf_[side].size();
      groupOf_[side].push_back(static_cast<std::uint32_t>(groups_.size() - 1));
    }
  }
  for (std::size_t b = 1; b < sides_.size(); ++b)
    for (std::size_t a = 0; a < b; ++a)
      if (!sides_[a].empty() && !sides_[b].empty() && !IsIn(a, 0, b)) Join({a, b}, 0, 0);
}

void ItemMatcher::Join(Sides sides, std::size_t a, std::size_t b) {
  const std::uint32_t to = groupOf_[sides.a][a], from = groupOf_[sides.b][b];
  for (std::size_t side = 0; side < kMostSides; ++side)
    if (const std::size_t item = groups_[from].at[side]; item != kNoItem) {
      groups_[to].at[side] = item;
      groupOf_[side][item] = to;
    }
}

// The folder is that of b; the odd numbers are for items that the third side has, too. False where
// the item lacks what the two must have in common.
bool ItemMatcher::KeyOf(unsigned common, Sides sides, std::size_t side, std::size_t item,
                        Key* key) const {
  const OutlineItem& what = sides_[side][item];
  const Texts& texts = texts_[side][item];
  const bool isAdded = sides.a != 0 && !IsIn(side, item, 0);
  const std::uint32_t address = isAdded && !texts.address ? texts.text : texts.address;
  const std::size_t folder = side == sides.b ? what.parent : Partner(side, what.parent, sides.b);
  if ((common & kFolder && folder == kNoItem) || (common & kIdentity && !texts.identity) ||
      (common & kAddress && !address) || (common & kNoAddress && address))
    return false;
  *key = {common & kFolder ? static_cast<std::uint32_t>(folder + 1) * 2 : 0, what.kind,
          common & kIdentity  ? texts.identity
          : common & kAddress ? address
                              : 0,
          common & kName ? texts.name : 0};
  return true;
}

// Folders come before what is in them, so that a folder that was just found counts for its items.
// Where the third side has both, they are two items.
bool ItemMatcher::MatchSides(unsigned common, Sides sides) {
  const auto [a, b] = sides;
  const std::size_t third = sides.third();
  std::unordered_map<Key, std::size_t, KeyHash> first;  // of the items of b that are alike
  std::vector<std::size_t> next;
  Key key;
  for (std::size_t i = sides_[b].size(); i-- > 1;)
    if (!IsIn(b, i, a) && KeyOf(common, sides, b, i, &key)) {
      if (next.empty()) next.resize(i + 1, kNoItem);
      key.folder += IsIn(b, i, third);
      const auto [at, isNew] = first.try_emplace(key, i);
      if (isNew) continue;
      next[i] = at->second;
      at->second = i;
    }
  if (first.empty()) return false;
  const bool needsBase = common & kNotAdded && a != 0;
  bool found = false;
  const auto match = [&](std::size_t i) {
    const auto at = first.find(key);
    if (at == first.end() || at->second == kNoItem) return false;
    Join(sides, i, at->second);
    at->second = next[at->second];
    return found = true;
  };
  for (std::size_t i = 1; i < sides_[a].size(); ++i) {
    if (IsIn(a, i, b) || !KeyOf(common, sides, a, i, &key)) continue;
    const bool isInThird = IsIn(a, i, third);
    if ((isInThird || !needsBase) && match(i)) continue;
    ++key.folder;
    if (!isInThird) match(i);
  }
  return found;
}

bool ItemMatcher::MatchAll(unsigned common) {
  bool found = false;
  for (std::size_t b = 1; b < sides_.size(); ++b)
    for (std::size_t a = 0; a < b; ++a) found |= MatchSides(common, {a, b});
  return found;
}

// An item that is found late may tell where others are. The rounds are bounded, because hostile
// outlines could need as many as they have levels.
void ItemMatcher::Match() {
  constexpr unsigned kByPlace[] = {kIdentity, kFolder | kName | kNoAddress,
                                   kFolder | kAddress | kName, kFolder | kAddress};
  constexpr unsigned kAnywhere[] = {kAddress | kName | kNotAdded, kAddress | kNotAdded};
  constexpr int kMostRounds = 4;
  bool found = true;
  for (int round = 0; round < kMostRounds && found; ++round) {
    found = false;
    for (const unsigned common : kByPlace) found |= MatchAll(common);
    for (const unsigned common : kAnywhere) found |= MatchAll(common);
    for (const unsigned common : kByPlace) found |= MatchAll(common);
    found |= MatchAll(kFolder | kName | kNotAdded);
  }
}

}  // namespace vosmere
