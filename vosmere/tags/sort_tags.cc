// Sorts lists of tags.
#include "vosmere/tags/sort_tags.h"

#include "vosmere/tags/tag_item.h"
#include "vosmere/tree/internal/name_sort.h"

namespace vosmere {

CSortRTagItem::~CSortRTagItem() = default;

TList<CTagItem*>* CSortRTagItem::Sort(TList<CTagItem*>* head, bool ascending) {
  const auto name = [](const TList<CTagItem*>* cell) { return cell->data->GetName(); };
  ascending ? SortNamesUp(head, name) : SortNamesDown(head, name);
  return head;
}

int CSortRTagItem::CompareNameAsc(void* a, void* b, void* key) {
  return -CompareNameDes(a, b, key);
}

int CSortRTagItem::CompareNameDes(void* a, void* b, void* key) {
  if (key && *static_cast<int*>(key) != 0) return 0;
  return CompareNoCase(static_cast<CTagItem*>(a)->GetName(), static_cast<CTagItem*>(b)->GetName());
}

}  // namespace vosmere
