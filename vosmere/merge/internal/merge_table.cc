#include "vosmere/merge/internal/merge_table.h"

#include "vosmere/merge/internal/item_matcher.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {

RNode* MergeItem::Link() const {
  return links[kOurs] ? links[kOurs] : links[kTheirs] ? links[kTheirs] : links[kBase];
}

MergeTable::MergeTable(const RNode* base, const RNode* ours, const RNode* theirs, TreeParts parts) {
  const TreeOutline outlines[] = {{base, parts}, {ours, parts}, {theirs, parts}};
  ItemMatcher matcher({outlines[kBase].items, outlines[kOurs].items, outlines[kTheirs].items});
  matcher.Match();
  std::vector<std::uint32_t> numbers(matcher.GroupCount(), kNobody);
  std::uint32_t next = 0;
  for (const Side side : {kBase, kOurs, kTheirs})
    for (std::size_t i = 0; i < outlines[side].items.size(); ++i) {
      std::uint32_t& number = numbers[matcher.GroupOf(side, i)];
      if (number == kNobody) number = next++;
      inOrder[side].push_back(number);
    }
  items.resize(next);
  for (const Side side : {kBase, kOurs, kTheirs}) AddSide(side, outlines[side]);
}

void MergeTable::AddSide(Side side, const TreeOutline& outline) {
  for (std::size_t i = 0; i < outline.links.size(); ++i) {
    MergeItem& item = items[inOrder[side][i]];
    item.links[side] = outline.links[i];
    item.isLocal = outline.items[i].kind >= kLocalRootKind;
    if (i > 0) item.parents[side] = inOrder[side][outline.items[i].parent];
  }
}

bool IsNewer(const RNode& link, const RNode& than) {
  const int version = link.item->GetVersion(), old = than.item->GetVersion();
  if (version != old) return version > old;
  if (!IsTimeSaid(link, kModifiedField) || !IsTimeSaid(than, kModifiedField)) return false;
  LONG modified = 0, before = 0;
  link.item->GetNodeStat()->GetStatTime(nullptr, &modified, nullptr);
  than.item->GetNodeStat()->GetStatTime(nullptr, &before, nullptr);
  return modified > before;
}

}  // namespace vosmere
