#include "vosmere/merge/internal/merge_places.h"

#include <algorithm>

#include "vosmere/tree/base_node.h"

namespace vosmere {
namespace {

/// Where an item is if neither side has moved it. With these places alone there is no circle: they
/// lead from what theirs has added to what ours has added, and from there to the base.
std::uint32_t StartOf(const MergeItem& item) {
  for (const Side side : {kBase, kOurs, kTheirs})
    if (item.IsIn(side)) return item.parents[side];
  return kNobody;
}

bool IsMoved(const MergeItem& item) {
  return item.parent != StartOf(item);
}

class Places {
 public:
  Places(MergeTable& table, FieldMerge& fields) : table_(table), fields_(fields) {}

  void Decide() {
    for (std::uint32_t i = 1; i < table_.items.size(); ++i) Choose(i);
    BreakCircles();
    for (std::uint32_t i = 0; i < table_.items.size(); ++i)
      for (const Side side : {kOurs, kTheirs})
        if (IsTouchedBy(table_.items[i], side)) Touch(i, side);
    for (std::uint32_t i = 0; i < table_.items.size(); ++i)
      if (MayStay(table_.items[i])) Keep(i);
    for (std::uint32_t i = 0; i < table_.items.size(); ++i) AddRemoval(i);
  }

 private:
  std::string NameOf(std::uint32_t number) const {
    return TextToUtf8(table_.items[number].Link()->item->GetName());
  }
  void AddConflict(std::uint32_t number, bool tookTheirs) {
    const MergeItem& item = table_.items[number];
    const auto in = [&](Side side) { return NameOf(item.parents[side]); };
    if (item.IsInBoth())
      table_.conflicts.push_back({number, "folder", in(kOurs), in(kTheirs), tookTheirs});
  }

  void Choose(std::uint32_t number) {
    MergeItem& item = table_.items[number];
    item.parent = StartOf(item);
    const std::uint32_t ours = item.parents[kOurs], theirs = item.parents[kTheirs];
    const bool oursMoved = item.IsIn(kOurs) && ours != item.parent;
    const bool theirsMoved = item.IsIn(kTheirs) && theirs != item.parent;
    bool takesTheirs = theirsMoved;
    const bool isOpen = item.IsIn(kBase) ? oursMoved && theirsMoved : theirsMoved;
    if (isOpen && item.IsInBoth() && ours != theirs) {
      takesTheirs = IsNewer(*item.links[kTheirs], *item.links[kOurs]);
      AddConflict(number, takesTheirs);
    }
    if (oursMoved || theirsMoved)
      item.parent = takesTheirs ? theirs : item.IsIn(kOurs) ? ours : item.parent;
  }

  /// The side whose move counts for an item that is moved.
  Side MoverOf(const MergeItem& item) const {
    return item.parents[kOurs] == item.parent ? kOurs : kTheirs;
  }
  bool IsOlderMove(std::uint32_t a, std::uint32_t b) const {
    const MergeItem &first = table_.items[a], &second = table_.items[b];
    const Side by = MoverOf(first), than = MoverOf(second);
    const RNode &link = *first.links[by], &other = *second.links[than];
    if (IsNewer(link, other) || IsNewer(other, link)) return IsNewer(other, link);
    return by != than ? by == kTheirs : a > b;
  }

  void BreakCircles() {
    enum : char { kNew, kOnPath, kDone };
    std::vector<char> state(table_.items.size(), kNew);
    std::vector<std::uint32_t> path;
    state[0] = kDone;
    for (std::uint32_t start = 1; start < state.size(); ++start) {
      path.clear();
      for (std::uint32_t at = start; state[at] != kDone; at = table_.items[at].parent) {
        if (state[at] == kOnPath) {
          const auto oldest = Oldest(std::find(path.begin(), path.end(), at), path.end());
          for (auto left = oldest + 1; left != path.end(); ++left) state[*left] = kNew;
          path.erase(oldest + 1, path.end());
          at = path.back();
          Undo(at);
          continue;
        }
        state[at] = kOnPath;
        path.push_back(at);
      }
      for (const std::uint32_t done : path) state[done] = kDone;
    }
  }
  using Step = std::vector<std::uint32_t>::iterator;
  Step Oldest(Step begin, Step end) const {
    Step oldest = end;
    for (Step at = begin; at != end; ++at)
      if (IsMoved(table_.items[*at]) && (oldest == end || IsOlderMove(*at, *oldest))) oldest = at;
    return oldest;
  }
  void Undo(std::uint32_t number) {
    MergeItem& item = table_.items[number];
    AddConflict(number, MoverOf(item) == kOurs);
    item.parent = StartOf(item);
  }

  bool IsTouchedBy(const MergeItem& item, Side side) {
    if (!item.IsIn(side)) return false;
    return !item.IsIn(kBase) || item.parents[side] != item.parents[kBase] ||
           fields_.IsChanged(item, side);
  }
  void Touch(std::uint32_t at, Side side) {
    for (; at != kNobody && !table_.items[at].isTouched[side]; at = table_.items[at].parent)
      table_.items[at].isTouched[side] = true;
  }

  /// What is removed on one side stays if the other has touched it.
  static bool MayStay(const MergeItem& item) {
    if (!item.IsIn(kBase) || item.IsInBoth()) return true;
    return (item.IsIn(kOurs) && item.isTouched[kOurs]) ||
           (item.IsIn(kTheirs) && item.isTouched[kTheirs]);
  }
  void Keep(std::uint32_t at) {
    for (; at != kNobody && !table_.items[at].stays; at = table_.items[at].parent)
      table_.items[at].stays = true;
  }
  void AddRemoval(std::uint32_t number) {
    const MergeItem& item = table_.items[number];
    if (!item.stays || !item.IsIn(kBase) || item.IsInBoth()) return;
    const auto what = [&](Side side) { return item.IsIn(side) ? "kept" : "removed"; };
    table_.conflicts.push_back({number, "removal", what(kOurs), what(kTheirs), item.IsIn(kTheirs)});
  }

  MergeTable& table_;
  FieldMerge& fields_;
};

}  // namespace

void DecidePlaces(MergeTable& table, FieldMerge& fields) {
  Places(table, fields).Decide();
}

}  // namespace vosmere
