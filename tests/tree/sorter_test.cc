// Every sorter beside a bubble sort of an array, on names of which many begin with one another.
#include "vosmere/tree/sorter.h"

#include <cctype>
#include <deque>
#include <random>

#include "tests/support/naive_sort.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/tags/tag_store.h"
#include "vosmere/tree/sort_list.h"
#include "vosmere/tree/sort_node.h"

namespace vosmere::test::sorter {

struct Entry {
  std::string name;
  LONG added, modified, visited;
  std::string place;  // where it stood, so that equal ones can be told apart
};
using Entries = std::vector<Entry>;

Entries RandomEntries(std::mt19937& random) {
  const auto time = [&] { return static_cast<LONG>(random() % 4) - 2; };
  Entries entries(1 + random() % 10);
  for (Entry& entry : entries) {
    entry = {"", time(), time(), time(), std::to_string(&entry - entries.data())};
    for (auto units = random() % 4; units > 0; --units) entry.name += "abAB"[random() % 4];
  }
  return entries;
}

int ByName(const Entry& a, const Entry& b) {
  for (std::size_t i = 0; i < a.name.size(); ++i) {
    const int x = std::tolower(a.name[i]), y = i < b.name.size() ? std::tolower(b.name[i]) : 0;
    if (x != y) return x - y;
  }
  return 0;
}

template <LONG Entry::*Time>
int ByTime(const Entry& a, const Entry& b) {
  return (a.*Time > b.*Time) - (a.*Time < b.*Time);
}

/// The places in the order that the array sort gives.
std::string Expected(Entries entries, int (*compare)(const Entry&, const Entry&), bool ascending) {
  NaiveSort(entries, [=](const Entry& a, const Entry& b) {
    return ascending ? -compare(a, b) : compare(a, b);
  });
  std::string places;
  for (const Entry& entry : entries) places += (places.empty() ? "" : " ") + entry.place;
  return places;
}

ItemPtr<CUrlNode> NewItem(const Entry& entry) {
  auto item = New<CUrlNode>();
  item->SetName(W(entry.name));
  item->SetDescription(W(entry.place));
  item->GetNodeStat()->SetStatTime(entry.added, entry.modified, entry.visited, ~0u);
  return item;
}

std::string Links(const Entries& entries, RNode* (CSortRNode::*sort)(RNode*, bool), bool flag) {
  TreePtr parent = Folder("parent");
  for (const Entry& entry : entries)
    RNTool::InsertAsChild(parent, RNode::New(NewItem(entry).release(), NT_URL));
  CSortRNode sorter;
  parent->firstChild = (sorter.*sort)(parent->firstChild, flag);
  return Row(parent->firstChild, [](auto* link) { return Utf8(link->item->GetDescription()); });
}

using ItemList = TList<CBaseNode*>;

std::string List(const Entries& entries, ItemList* (CSortRList::*sort)(ItemList*, bool),
                 bool flag) {
  std::vector<ItemPtr<CUrlNode>> items;
  std::deque<ItemList> cells;
  ItemList* head = nullptr;
  for (const Entry& entry : entries)
    chain::Append(head, &cells.emplace_back(items.emplace_back(NewItem(entry)).get()));
  CSortRList sorter;
  return Row((sorter.*sort)(head, flag), [](auto* c) { return Utf8(c->data->GetDescription()); });
}

std::string Tags(const Entries& entries, bool ascending) {
  CTagStore store;
  CTagGroup* const group = store.AddTagGroup(CTagStore::CreateTagGroup())->data;
  for (const Entry& entry : entries) {
    CTagItem* const tag = group->AddTagItem(CTagStore::CreateTagItem())->data;
    tag->SetName(W(entry.name));
    tag->SetCount(std::stoi(entry.place));
  }
  group->SortTagItem(ascending);
  return Row(group->GetTagItemHead(), [](auto* c) { return std::to_string(c->data->GetCount()); });
}

TEST(Sorters, GiveWhatABubbleSortOfAnArrayGives) {
  constexpr auto added = ByTime<&Entry::added>, modified = ByTime<&Entry::modified>,
                 visited = ByTime<&Entry::visited>;
  std::mt19937 random(7);
  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    const Entries entries = RandomEntries(random);
    for (const bool flag : {false, true}) {
      const auto expected = [&](auto compare) { return Expected(entries, compare, flag); };
      EXPECT_EQ(Links(entries, &CSortRNode::Sort, flag), expected(ByName));
      EXPECT_EQ(Links(entries, &CSortRNode::SortByCreateTime, flag), expected(added));
      EXPECT_EQ(Links(entries, &CSortRNode::SortByModifyTime, flag), expected(modified));
      EXPECT_EQ(Links(entries, &CSortRNode::SortByVisitTime, flag), expected(visited));
      EXPECT_EQ(Links(entries, &CSortRNode::SortByOrder, flag), Expected(entries, ByName, false));
      EXPECT_EQ(List(entries, &CSortRList::Sort, flag), expected(ByName));
      EXPECT_EQ(List(entries, &CSortRList::SortByVisitTime, flag), expected(visited));
      EXPECT_EQ(Tags(entries, flag), expected(ByName));
    }
  }
}

}  // namespace vosmere::test::sorter
