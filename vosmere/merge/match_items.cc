#include "vosmere/merge/match_items.h"

#include <algorithm>
#include <vector>

#include "vosmere/merge/internal/item_matcher.h"

namespace vosmere {

DiffHandler::~DiffHandler() = default;

namespace {

/// Marks those that are not in the longest rising part of `places`.
void MarkMoved(const std::vector<std::size_t>& places, const std::vector<std::size_t>& items,
               std::vector<bool>& moved) {
  if (std::is_sorted(places.begin(), places.end())) return;
  std::vector<std::size_t> ends, before(places.size());  // ends[n] ends the best part of length n+1
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto at = std::lower_bound(ends.begin(), ends.end(), places[i],
                                     [&](std::size_t j, std::size_t p) { return places[j] < p; });
    before[i] = at == ends.begin() ? kNoItem : at[-1];
    if (at == ends.end())
      ends.push_back(i);
    else
      *at = i;
  }
  for (const std::size_t item : items) moved[item] = true;
  for (std::size_t i = ends.back(); i != kNoItem; i = before[i]) moved[items[i]] = false;
}

/// The items of b that are in the same folder as in a, but at another place.
std::vector<bool> Reordered(const ItemMatcher& matcher, ItemMatcher::Outline a,
                            ItemMatcher::Outline b) {
  std::vector<bool> moved(b.size());
  std::vector<std::vector<std::size_t>> kept(b.size());
  for (std::size_t i = 1; i < b.size(); ++i) {
    const std::size_t before = matcher.Partner(1, i, 0);
    if (before != kNoItem && matcher.Partner(0, a[before].parent, 1) == b[i].parent)
      kept[b[i].parent].push_back(i);
  }
  std::vector<std::size_t> places;
  for (const std::vector<std::size_t>& items : kept) {
    places.clear();
    for (const std::size_t item : items) places.push_back(matcher.Partner(1, item, 0));
    MarkMoved(places, items, moved);
  }
  return moved;
}

}  // namespace

void DiffItems(const OutlineItem* a, std::size_t countA, const OutlineItem* b, std::size_t countB,
               DiffHandler& handler) {
  const ItemMatcher::Outline before(a, countA), after(b, countB);
  ItemMatcher matcher({before, after});
  matcher.Match();
  for (std::size_t i = 0; i < countA; ++i)
    if (matcher.Partner(0, i, 1) == kNoItem) handler.Report({kIsRemoved, i, kNoItem});
  const std::vector<bool> reordered = Reordered(matcher, before, after);
  for (std::size_t i = 0; i < countB; ++i) {
    const std::size_t was = matcher.Partner(1, i, 0);
    if (was == kNoItem) {
      handler.Report({kIsAdded, kNoItem, i});
      continue;
    }
    const bool isMoved = reordered[i] || matcher.Partner(0, a[was].parent, 1) != b[i].parent;
    const unsigned what = (isMoved ? kIsMoved : 0u) | (a[was].name != b[i].name ? kIsRenamed : 0u) |
                          (handler.FieldsDiffer(was, i) ? kIsChanged : 0u);
    if (what) handler.Report({what, was, i});
  }
}

}  // namespace vosmere
