// Sorts lists of items.
#include "vosmere/tree/sort_list.h"

#include "vosmere/base/internal/merge_sort.h"
#include "vosmere/tree/base_node.h"
#include "vosmere/tree/internal/name_sort.h"

namespace vosmere {
namespace {

enum Key : int { kName, kLastVisited };

CBaseNode* Item(void* item) {
  return static_cast<CBaseNode*>(item);
}

LONG LastVisited(void* item) {
  LONG time = 0;
  Item(item)->GetNodeStat()->GetStatTime(nullptr, nullptr, &time);
  return time;
}

}  // namespace

CSortRList::~CSortRList() = default;

TList<CBaseNode*>* CSortRList::Sort(TList<CBaseNode*>* head, bool ascending) {
  const auto name = [](const TList<CBaseNode*>* cell) { return cell->data->GetName(); };
  ascending ? SortNamesUp(head, name) : SortNamesDown(head, name);
  return head;
}

TList<CBaseNode*>* CSortRList::SortByVisitTime(TList<CBaseNode*>* head, bool ascending) {
  chain::MergeSort(head, [=](const TList<CBaseNode*>* a, const TList<CBaseNode*>* b) {
    const LONG x = LastVisited(a->data), y = LastVisited(b->data);
    return ascending ? x < y : x > y;
  });
  return head;
}

int CSortRList::CompareNameAsc(void* a, void* b, void* key) {
  return -CompareNameDes(a, b, key);
}

int CSortRList::CompareNameDes(void* a, void* b, void* key) {
  switch (key ? *static_cast<int*>(key) : kName) {
    case kName: return CompareNoCase(Item(a)->GetName(), Item(b)->GetName());
    case kLastVisited: return CompareValue(LastVisited(a), LastVisited(b));
    default: return 0;
  }
}

}  // namespace vosmere
