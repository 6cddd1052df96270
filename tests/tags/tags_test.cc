#include "tests/support/test.h"
#include "vosmere/tags/tag_store.h"

namespace vosmere::test::tags {

CTagGroup* NewGroup(const Wide& name) {
  CTagGroup* const group = CTagStore::CreateTagGroup();
  group->SetName(name);
  return group;
}

/// The names of groups or tags.
template <class T>
std::string Names(const TList<T>* head) {
  return Row(head, [](auto* cell) { return Utf8(cell->data->GetName()); });
}

TEST(TagGroup, OwnsAndSortsItsTags) {
  CTagStore store;
  CTagGroup* const group = store.AddTagGroup(NewGroup(nullptr))->data;
  CTagItem *const news = CTagStore::CreateTagItem(), *const art = CTagStore::CreateTagItem();
  news->SetName(W("news"));
  art->SetName(W("Art"));
  EXPECT_FALSE(group->DeleteTagItem(news));
  EXPECT_EQ(group->AddTagItem(news)->data, news);
  group->AddTagItem(art);
  group->SortTagItem(true);
  EXPECT_EQ(Names(group->GetTagItemHead()), "Art news");
  group->SortTagItem(false);
  EXPECT_EQ(Names(group->GetTagItemHead()), "news Art");
  EXPECT_TRUE(group->DeleteTagItem(news));
  EXPECT_EQ(Names(group->GetTagItemHead()), "Art");
}

TEST(TagStore, TheLastGroupAddedWithoutANameIsTheDefaultUntilItGoes) {
  CTagStore store;
  CTagGroup *const none = NewGroup(nullptr), *const empty = NewGroup(W(""));
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
  store.AddTagGroup(empty);
  store.DeleteAll();
  EXPECT_EQ(Names(store.GetTagGroupHead()), "");
  EXPECT_EQ(store.GetDefaultGroup(), nullptr);
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
  store.SetRTagGroupHead(TList<CTagGroup*>::New(NewGroup(W("B"))));
  EXPECT_EQ(Names(store.GetTagGroupHead()), "B");
  EXPECT_EQ(store.GetDefaultGroup(), nullptr);
}

}  // namespace vosmere::test::tags
