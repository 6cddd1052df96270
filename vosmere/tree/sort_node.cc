// Sorts chains of links.
#include "vosmere/tree/sort_node.h"

#include "vosmere/tree/base_node.h"
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

}  // namespace

CSortRNode::~CSortRNode() = default;

RNode* CSortRNode::Sort(RNode* head, bool invert) {
  BubbleSort(&head, CompareItemByCol, nullptr, invert);
  return head;
}

RNode* CSortRNode::SortByCreateTime(RNode* head, bool invert) {
  int column = kAdded;
  BubbleSort(&head, CompareItemByCol, &column, invert);
  return head;
}

RNode* CSortRNode::SortByModifyTime(RNode* head, bool invert) {
  int column = kModified;
  BubbleSort(&head, CompareItemByCol, &column, invert);
  return head;
}

RNode* CSortRNode::SortByVisitTime(RNode* head, bool invert) {
  int column = kLastVisited;
  BubbleSort(&head, CompareItemByCol, &column, invert);
  return head;
}

RNode* CSortRNode::SortByOrder(RNode* head, bool ascending) {
  // CompareByOrderAsc negates and is inverted again, so both branches sort from Z to A.
  if (ascending)
    BubbleSort(&head, CompareByOrderAsc, nullptr, true);
  else
    BubbleSort(&head, CompareByOrderDes, nullptr, false);
  return head;
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
