#include "vosmere/merge/internal/merge_order.h"

#include <algorithm>
#include <utility>

namespace vosmere {
namespace {

using Numbers = std::vector<std::uint32_t>;

/// What only `more` has, with what it follows there: the last that both have, or kNobody.
struct Followers {
  Followers(const Numbers& more, Numbers into) {
    std::sort(into.begin(), into.end());
    std::uint32_t last = kNobody;
    for (const std::uint32_t number : more) {
      if (!std::binary_search(into.begin(), into.end(), number)) {
        all.emplace_back(last, number);
        continue;
      }
      last = number;
      if (first == kNobody) first = number;
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
  }
  void AddThoseOf(std::uint32_t number, Numbers& to) const {
    auto at = std::lower_bound(all.begin(), all.end(), std::pair{number, std::uint32_t{0}});
    for (; at != all.end() && at->first == number; ++at) to.push_back(at->second);
  }

  std::vector<std::pair<std::uint32_t, std::uint32_t>> all;
  std::uint32_t first = kNobody;  // of those that both have
};

/// Puts what is only in `more` right after what it follows there; what follows nothing that both
/// have, right before the first that both have, or at the end.
void Insert(const Numbers& more, Numbers& into) {
  if (more.empty()) return;
  const Followers followers(more, into);
  if (followers.all.empty()) return;
  Numbers merged;
  for (const std::uint32_t number : into) {
    if (number == followers.first) followers.AddThoseOf(kNobody, merged);
    merged.push_back(number);
    followers.AddThoseOf(number, merged);
  }
  if (followers.first == kNobody) followers.AddThoseOf(kNobody, merged);
  into.swap(merged);
}

/// Whether a side has the item where it comes to be.
bool IsAt(const MergeItem& item, Side side) {
  return item.stays && item.IsIn(side) && item.parents[side] == item.parent;
}

/// The items of each folder in the order of a side.
std::vector<Numbers> OrderOf(const MergeTable& table, Side side) {
  std::vector<Numbers> in(table.items.size());
  for (const std::uint32_t i : table.inOrder[side])
    if (i != 0 && IsAt(table.items[i], side)) in[table.items[i].parent].push_back(i);
  return in;
}

/// Those that the base and both sides have.
Numbers Common(const MergeTable& table, const Numbers& numbers) {
  Numbers common;
  for (const std::uint32_t i : numbers) {
    const MergeItem& item = table.items[i];
    if (IsAt(item, kBase) && IsAt(item, kOurs) && IsAt(item, kTheirs)) common.push_back(i);
  }
  return common;
}

}  // namespace

std::vector<Numbers> DecideOrder(const MergeTable& table) {
  std::vector<Numbers> base = OrderOf(table, kBase), ours = OrderOf(table, kOurs),
                       theirs = OrderOf(table, kTheirs);
  for (std::size_t folder = 0; folder < ours.size(); ++folder) {
    const bool hasBase = table.items[folder].IsIn(kBase);
    if (hasBase && Common(table, ours[folder]) == Common(table, base[folder]))
      ours[folder].swap(theirs[folder]);  // it is theirs that may have changed the order
    Insert(theirs[folder], ours[folder]);
    Insert(base[folder], ours[folder]);
  }
  return ours;
}

}  // namespace vosmere
