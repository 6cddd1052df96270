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

ItemMatcher::ItemMatcher(Outline a, Outline b) : a_(a), b_(b), inB_(a.size()), inA_(b.size()) {
  Number(a, textsA_);
  Number(b, textsB_);
  if (!a.empty() && !b.empty()) Pair(0, 0);
}

void ItemMatcher::Number(Outline outline, std::vector<Texts>& texts) {
  texts.reserve(outline.size());
  for (const OutlineItem& item : outline)
    texts.push_back({numbers_.NumberOf(item.identity), numbers_.NumberOf(item.address),
                     numbers_.NumberOf(item.name)});
}

void ItemMatcher::Pair(std::size_t a, std::size_t b) {
  if (a != kNoItem) inB_[a] = {b, false};
  if (b != kNoItem) inA_[b] = {a, false};
}

// `folder` is in b. False where the item lacks what the two must have in common.
bool ItemMatcher::KeyOf(unsigned common, const OutlineItem& item, const Texts& texts,
                        std::size_t folder, Key* key) const {
  if ((common & kFolder && folder == kNoItem) || (common & kIdentity && !texts.identity) ||
      (common & kAddress && !texts.address) || (common & kNoAddress && texts.address))
    return false;
  *key = {common & kFolder ? static_cast<std::uint32_t>(folder + 1) : 0, item.kind,
          common & kIdentity  ? texts.identity
          : common & kAddress ? texts.address
                              : 0,
          common & kName ? texts.name : 0};
  return true;
}

// Folders come before what is in them, so that a folder that was just paired counts for its items.
void ItemMatcher::Match(unsigned common) {
  std::unordered_map<Key, std::size_t, KeyHash> first;  // of the items of b that are alike
  std::vector<std::size_t> next(b_.size(), kNoItem);
  Key key;
  for (std::size_t i = b_.size(); i-- > 1;)
    if (inA_[i].isFree && KeyOf(common, b_[i], textsB_[i], b_[i].parent, &key)) {
      const auto [at, isNew] = first.try_emplace(key, i);
      if (isNew) continue;
      next[i] = at->second;
      at->second = i;
    }
  if (first.empty()) return;
  for (std::size_t i = 1; i < a_.size(); ++i) {
    if (!inB_[i].isFree || !KeyOf(common, a_[i], textsA_[i], InB(a_[i].parent), &key)) continue;
    const auto at = first.find(key);
    if (at == first.end() || at->second == kNoItem) continue;
    Pair(i, at->second);
    at->second = next[at->second];
  }
}

void ItemMatcher::MatchStates() {
  MatchAdditions();
  Match(kAddress | kName);
  Match(kAddress);
  MatchAdditions();  // in what was just found
  Match(kFolder | kName);
}

void ItemMatcher::MatchAdditions() {
  Match(kIdentity);
  Match(kFolder | kName | kNoAddress);
  Match(kFolder | kAddress | kName);
  Match(kFolder | kAddress);
}

}  // namespace vosmere
