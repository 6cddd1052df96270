// Sorts chains of links.
#include "vosmere/tree/sort_node.h"

#include "vosmere/base/internal/merge_sort.h"
#include "vosmere/tree/base_node.h"
#include "vosmere/tree/internal/name_sort.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {
namespace {

enum Column : int { kName, kAdded, kModified, kLastVisited };

CBaseNode* Item(void* item) {
  return static_cast<CBaseNode*>(item);
}

LONG StatTime(CBaseNode* item, int column) {
  LONG added = 0, modified = 0, lastVisited = 0;
  item->GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  return column == kAdded ? added : column == kModified ? modified : lastVisited;
}

RNode* SortByTime(RNode* head, Column column, bool earliestFirst) {
  chain::MergeSort(head, [=](const RNode* a, const RNode* b) {
    const LONG x = StatTime(a->item, column), y = StatTime(b->item, column);
    return earliestFirst ? x < y : x > y;
  });
  return head;
}

}  // namespace

CSortRNode::~CSortRNode() = default;

RNode* CSortRNode::Sort(RNode* head, bool invert) {
  const auto name = [](const RNode* link) { return link->item->GetName(); };
  invert ? SortNamesUp(head, name) : SortNamesDown(head, name);
  return head;
}

RNode* CSortRNode::SortByCreateTime(RNode* head, bool invert) {
  return SortByTime(head, kAdded, invert);
}

RNode* CSortRNode::SortByModifyTime(RNode* head, bool invert) {
  return SortByTime(head, kModified, invert);
}

RNode* CSortRNode::SortByVisitTime(RNode* head, bool invert) {
  return SortByTime(head, kLastVisited, invert);
}

// CompareByOrderAsc negates and would be inverted again, so both directions sort from Z to A.
RNode* CSortRNode::SortByOrder(RNode* head, bool) {
  return Sort(head, false);
}

bool CSortRNode::BubbleSort(RNode** head, Compare compare, void* parameter, bool invert) {
  return chain::BubbleSort(*head, [=](RNode* a, RNode* b) {
    const int result = compare(a->item, b->item, parameter);
    // Not -result, which overflows for the smallest int.
    return invert ? CompareValue(0, result) : result;
  });
}

void CSortRNode::SwapWithNext(RNode* link, RNode** head) {
  chain::SwapWithNext(link, *head);
}

int CSortRNode::CompareItemByCol(void* a, void* b, void* column) {
  const int which = column ? *static_cast<int*>(column) : kName;
  if (which == kName) return CompareNoCase(Item(a)->GetName(), Item(b)->GetName());
  if (which < kName || which > kLastVisited) return 0;
  return CompareValue(StatTime(Item(a), which), StatTime(Item(b), which));
}

int CSortRNode::CompareByOrderAsc(void* a, void* b, void*) {
  return -CompareNoCase(Item(a)->GetName(), Item(b)->GetName());
}

int CSortRNode::CompareByOrderDes(void* a, void* b, void*) {
  return CompareNoCase(Item(a)->GetName(), Item(b)->GetName());
}

}  // namespace vosmere
