// Compares every sorter with a bubble sort of an array, on names with common beginnings.
#include "vosmere/tree/sorter.h"

#include <algorithm>
#include <cctype>
#include <deque>
#include <functional>
#include <random>
#include <utility>

#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/tags/tag_store.h"
#include "vosmere/tree/sort_list.h"
#include "vosmere/tree/sort_node.h"
#include "vosmere/tree/sort_order.h"

namespace vosmere::test::sorter {

/// A bubble sort of a row; `compare` below zero means that its second argument belongs before its
/// first. Returns whether any were exchanged, and how many pairs were compared.
template <class Item, class Compare>
std::pair<bool, int> NaiveSort(std::vector<Item>& items, Compare compare) {
  std::pair<bool, int> done(false, 0);
  bool swapped = true;
  for (std::size_t end = std::max<std::size_t>(items.size(), 1) - 1; swapped && end > 0; --end) {
    swapped = false;
    for (std::size_t i = 0; i < end; ++i) {
      ++done.second;
      if (compare(items[i], items[i + 1]) >= 0) continue;
      std::swap(items[i], items[i + 1]);
      swapped = done.first = true;
    }
  }
  return done;
}

struct Entry {
  std::string name;
  LONG added, modified, visited;
  std::string place;  // its original place, so that equal names can be distinguished
};
using Entries = std::vector<Entry>;

Entries RandomEntries(std::mt19937& random) {
  const auto time = [&] { return static_cast<LONG>(random() % 4) - 2; };
  Entries entries(random() % 10);
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

/// The places in the order of the array sort.
std::string Expected(Entries entries, int (*compare)(const Entry&, const Entry&), bool ascending) {
  NaiveSort(entries, [=](const Entry& a, const Entry& b) {
    return ascending ? -compare(a, b) : compare(a, b);
  });
  std::string places;
  for (const Entry& entry : entries) places += (places.empty() ? "" : " ") + entry.place;
  return places;
}

Item<CUrlNode> NewItem(const Entry& entry) {
  auto item = New<CUrlNode>();
  item->SetName(W(entry.name));
  item->SetDescription(W(entry.place));
  item->SetOrder(-std::stoi(entry.place));
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
  std::vector<Item<CUrlNode>> items;
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

TEST(Sorters, HaveItsStepsForDerivedOnes) {
  struct Sorter : CSortRNode {
    using CSortRNode::BubbleSort;
    using CSortRNode::CompareByOrderAsc;
    using CSortRNode::CompareByOrderDes;
    using CSortRNode::CompareItemByCol;
    using CSortRNode::SwapWithNext;
  } sorter;
  TreePtr tree = Tree("root(a b)");
  EXPECT_FALSE(sorter.BubbleSort(&tree->firstChild, Sorter::CompareItemByCol, nullptr, true));
  EXPECT_TRUE(sorter.BubbleSort(&tree->firstChild, Sorter::CompareItemByCol, nullptr, false));
  EXPECT_EQ(Shape(tree), "root(b a)");
  sorter.SwapWithNext(tree->firstChild, &tree->firstChild);
  EXPECT_EQ(Shape(tree), "root(a b)");

  void* const a = tree["a"]->item;
  void* const b = tree["b"]->item;
  tree["b"]->item->GetNodeStat()->SetStatTime(2147483647, 2147483647, 2147483647, ~0u);
  for (int column : {-1, 1, 2, 3, 4})
    EXPECT_EQ(Sorter::CompareItemByCol(a, b, &column), column >= 1 && column <= 3 ? -1 : 0);
  EXPECT_LT(Sorter::CompareItemByCol(a, b, nullptr), 0);
  EXPECT_GT(Sorter::CompareByOrderAsc(a, b, nullptr), 0);
  EXPECT_LT(Sorter::CompareByOrderDes(a, b, nullptr), 0);
}

TEST(Sorters, CompareNoMoreThanABubbleSortDoes) {
  struct Cell {
    Cell* prev;
    Cell* next;
    int number;
  };
  std::mt19937 random(20);
  for (int round = 0; round < 500; ++round) {
    std::vector<int> numbers(1 + random() % 6);
    for (int& number : numbers) number = static_cast<int>(random() % 3);
    std::deque<Cell> cells;
    Cell* head = nullptr;
    for (const int number : numbers)
      chain::Append(head, &cells.emplace_back(Cell{nullptr, nullptr, number}));
    int compared = 0;
    const bool anySwap = chain::BubbleSort(head, [&](Cell* a, Cell* b) {
      ++compared;
      return a->number - b->number;
    });
    ASSERT_EQ(std::pair(anySwap, compared), NaiveSort(numbers, std::minus<>()));
  }
}

TEST(CompareText, HoldsThePrefixRuleAndFoldsAsciiAlone) {
  const Wide null(nullptr);
  const struct {
    Wide a, b;
    int sign;
  } cases[] = {{W("ab"), W("abc"), 0}, {W("abc"), W("ab"), 1}, {W("ABC"), W("abc"), 0},
               {W("a"), W("b"), -1},   {W(""), W("x"), 0},     {W("x"), W(""), 1},
               {W("_"), W("A"), -1},   {W("É"), W("é"), -1},   {W("Z"), W("["), 1},
               {null, W("a"), 0},      {W("a"), null, 1}};
  for (const auto& c : cases) {
    const int result = CompareTextNoCase(c.a, c.b);
    EXPECT_EQ((result > 0) - (result < 0), c.sign) << Utf8(c.a) << " against " << Utf8(c.b);
  }
}

}  // namespace vosmere::test::sorter
