// Groups of tags. Tags are freed by CTagStore, which alone can create them.
#include "vosmere/tags/tag_group.h"

#include "vosmere/tags/sort_tags.h"
#include "vosmere/tags/tag_store.h"

namespace vosmere {

CTagGroup::~CTagGroup() {
  DeleteAll();
}

CTagGroup::TagItemList* CTagGroup::AddTagItem(CTagItem* item) {
  return list::Append(items_, item);
}

bool CTagGroup::DeleteTagItem(CTagItem* item) {
  if (!list::Remove(items_, item)) return false;
  CTagStore::DeleteTagItem(item);
  return true;
}

void CTagGroup::DeleteAll() {
  list::Delete(std::exchange(items_, nullptr), CTagStore::DeleteTagItem);
}

void CTagGroup::SortTagItem(bool ascending) {
  items_ = CSortRTagItem().Sort(items_, ascending);
}

}  // namespace vosmere
