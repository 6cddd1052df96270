#include "vosmere/nodes/tag_store.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failing_memory.h"
#include "tests/support/row.h"
#include "tests/support/wide.h"
#include "vosmere/nodes/sort_tags.h"

namespace vosmere::test {
namespace {

CTagGroup* NewGroup(const Wide& name) {
  CTagGroup* const group = CTagStore::CreateTagGroup();
  group->SetName(name);
  return group;
}

CTagItem* AddTag(CTagGroup* group, const std::string& name) {
  CTagItem* const tag = CTagStore::CreateTagItem();
  tag->SetName(W(name));
  EXPECT_EQ(group->AddTagItem(tag)->data, tag);
  return tag;
}

/// The names of groups or tags.
template <class T>
std::string Names(const TList<T>* head) {
  return Row(head, [](auto* cell) { return Utf8(cell->data->GetName()); });
}

TEST(TagGroup, OwnsItsTags) {
  CTagStore store;
  CTagGroup* const group = store.AddTagGroup(NewGroup(nullptr))->data;
  CTagGroup* const other = store.AddTagGroup(NewGroup(nullptr))->data;
  CTagItem* const news = AddTag(group, "news");
  AddTag(group, "Art");
  CTagItem* const sport = AddTag(other, "sport");
  EXPECT_EQ(news->GetCount(), 1);
  EXPECT_FALSE(group->DeleteTagItem(sport));
  EXPECT_EQ(Names(group->GetTagItemHead()), "news Art");
  group->SortTagItem(true);
  EXPECT_EQ(Names(group->GetTagItemHead()), "Art news");
  group->SortTagItem(false);
  EXPECT_EQ(Names(group->GetTagItemHead()), "news Art");
  EXPECT_TRUE(group->DeleteTagItem(news));
  group->SortTagItem(true);
  EXPECT_EQ(Names(group->GetTagItemHead()), "Art");
  group->DeleteAll();
  group->SortTagItem(true);
  EXPECT_EQ(group->GetTagItemHead(), nullptr);
}

TEST(TagStore, TheLastGroupAddedWithoutANameIsTheDefaultUntilItGoes) {
  CTagStore store;
  CTagGroup* const none = NewGroup(nullptr);
  CTagGroup* const empty = NewGroup(W(""));
  store.AddTagGroup(NewGroup(W("A")));
  EXPECT_EQ(store.GetDefaultGroup(), nullptr);
  store.AddTagGroup(none);
  EXPECT_EQ(store.GetDefaultGroup(), none);
  store.AddTagGroup(empty);
  store.AddTagGroup(NewGroup(W("B")));
  EXPECT_EQ(Names(store.GetTagGroupHead()), "A (null)  B");
  EXPECT_EQ(store.GetDefaultGroup(), empty);

  store.RemoveTagGroup(empty);
  store.RemoveTagGroup(empty);
  EXPECT_EQ(Names(store.GetTagGroupHead()), "A (null) B");
  EXPECT_EQ(store.GetDefaultGroup(), nullptr) << "not the other one without a name";
  EXPECT_EQ(Utf8(empty->GetName()), "");
  CTagStore::DeleteTagGroup(empty);
  store.DeleteAll();
  EXPECT_EQ(store.GetTagGroupHead(), nullptr);
}

TEST(TagStore, TakesAListWhoseFirstGroupWithoutANameIsTheDefault) {
  CTagStore store;
  store.AddTagGroup(NewGroup(nullptr));
  TList<CTagGroup*>* list = nullptr;
  CTagGroup* const first = NewGroup(W(""));
  for (CTagGroup* const group : {NewGroup(W("A")), first, NewGroup(nullptr)})
    list::Append(list, group);
  store.SetRTagGroupHead(list);
  EXPECT_EQ(store.GetDefaultGroup(), first);
  store.SetRTagGroupHead(store.GetTagGroupHead());
  EXPECT_EQ(Names(store.GetTagGroupHead()), "A  (null)");

  TList<CTagGroup*>* named = nullptr;
  list::Append(named, NewGroup(W("B")));
  store.SetRTagGroupHead(named);
  EXPECT_EQ(store.GetDefaultGroup(), nullptr);
  store.SetRTagGroupHead(nullptr);
  EXPECT_EQ(store.GetTagGroupHead(), nullptr);
}

TEST(TagStore, WithoutMemoryNothingIsTaken) {
  CTagStore store;
  CTagGroup* const group = NewGroup(nullptr);
  CTagItem* const tag = CTagStore::CreateTagItem();
  {
    const FailingMemory memory(0);
    EXPECT_EQ(CTagStore::CreateTagGroup(), nullptr);
    EXPECT_EQ(CTagStore::CreateTagItem(), nullptr);
    EXPECT_EQ(store.AddTagGroup(group), nullptr);
    EXPECT_EQ(group->AddTagItem(tag), nullptr);
  }
  EXPECT_EQ(store.GetDefaultGroup(), nullptr);
  CTagStore::DeleteTagGroup(group);
  CTagStore::DeleteTagItem(tag);
}

struct Sorter : CSortRTagItem {
  using CSortRTagItem::BubbleSort;
  using CSortRTagItem::CompareNameAsc;
  using CSortRTagItem::CompareNameDes;
  using CSortRTagItem::SwapWithNext;
};

TEST(SortTags, ComparesByNameAndByNoOtherKey) {
  CTagStore store;
  CTagGroup* const group = store.AddTagGroup(NewGroup(nullptr))->data;
  CTagItem *const a = AddTag(group, "a"), *const b = AddTag(group, "B");
  int name = 0, other = 1;
  EXPECT_GT(Sorter::CompareNameAsc(a, b, &name), 0);
  EXPECT_LT(Sorter::CompareNameDes(a, b, nullptr), 0);
  EXPECT_EQ(Sorter::CompareNameAsc(a, b, &other), 0);
  EXPECT_EQ(Sorter::CompareNameDes(a, b, &other), 0);
}

}  // namespace
}  // namespace vosmere::test
