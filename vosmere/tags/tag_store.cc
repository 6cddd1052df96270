// The user's tags.
#include "vosmere/tags/tag_store.h"

#include <utility>

namespace vosmere {
namespace {

bool IsNamed(const CTagGroup* group) {
  return group->GetName() && *group->GetName();
}

}  // namespace

CTagStore::~CTagStore() {
  DeleteAll();
}

CTagGroup* CTagStore::CreateTagGroup() {
  return new (std::nothrow) CTagGroup;
}

CTagItem* CTagStore::CreateTagItem() {
  return new (std::nothrow) CTagItem;
}

void CTagStore::DeleteTagGroup(CTagGroup* group) {
  delete group;
}

void CTagStore::DeleteTagItem(CTagItem* item) {
  delete item;
}

void CTagStore::DeleteRTagGroupList(TagGroupList* head) {
  list::Delete(head, DeleteTagGroup);
}

CTagStore::TagGroupList* CTagStore::AddTagGroup(CTagGroup* group) {
  TagGroupList* const cell = list::Append(groups_, group);
  if (cell && !IsNamed(group)) defaultGroup_ = group;
  return cell;
}

void CTagStore::RemoveTagGroup(CTagGroup* group) {
  if (list::Remove(groups_, group) && group == defaultGroup_) defaultGroup_ = nullptr;
}

void CTagStore::DeleteAll() {
  DeleteRTagGroupList(std::exchange(groups_, nullptr));
  defaultGroup_ = nullptr;
}

void CTagStore::SetRTagGroupHead(TagGroupList* head) {
  // The store's own list must not be freed before it is set again.
  if (head != groups_) DeleteAll();
  groups_ = head;
  TagGroupList* const unnamed =
      chain::Find(head, [](const TagGroupList* cell) { return !IsNamed(cell->data); });
  defaultGroup_ = unnamed ? unnamed->data : nullptr;
}

CTagStore::TagGroupList* CTagStore::DetachRTagGroupHead() {
  defaultGroup_ = nullptr;
  return std::exchange(groups_, nullptr);
}

}  // namespace vosmere
