// Benchmarks of operations on lists and trees of n, 10 n and 100 n things. The time should grow
// linearly: measure.py prints the exponent.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "bench/document_bench.h"
#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_tool.h"
#include "vosmere/cpp.h"
#include "vosmere/tabs/url_map.h"
#include "vosmere/tree/sort_node.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::bench {
namespace {

std::u16string Numbered(std::u16string text, int i) {
  const std::string number = std::to_string(i);
  return text.append(number.begin(), number.end());
}

std::u16string Address(int i) {
  return Numbered(u"http://feeds.example/news/", i);
}

/// A list of collections with the addresses `first` to `last`, each modulo `different`.
RColctItem* NewList(int first, int last, int different) {
  RColctItem* head = nullptr;
  for (int i = first; i < last; ++i) {
    CColctNode* const colct = CColctNode::New();
    colct->SetUrl(Wide(Address(i % different)));
    colct->SetUUID(Wide(Numbered(u"", i)));
    chain::Append(head, RColctItem::New(colct));
  }
  return head;
}

/// Merges lists of which half of the old collections are in the new one.
void Merge(benchmark::State& state, int count) {
  for (auto _ : state) {
    RColctItem* old = NewList(0, count, 2 * count);
    RColctItem* const fresh = NewList(count / 2, count + count / 2, 2 * count);
    RColctItem* removed = nullptr;
    Timed(state, [&] { return CRColctTool().UpdateRColctItemList(fresh, &old, &removed); });
    for (RColctItem* const list : {old, fresh, removed}) RColctItem::DeleteList(list);
  }
}

/// Removes duplicates, which are half of the collections.
void Thin(benchmark::State& state, int count) {
  for (auto _ : state) {
    RColctItem* const list = NewList(0, count, count / 2);
    Timed(state, [&] { return CRColctTool().DeleteDuplcateColct(list); });
    RColctItem::DeleteList(list);
  }
}

/// Removes every second collection by its address.
void DeleteByUrl(benchmark::State& state, int count) {
  for (auto _ : state) {
    RColctItem* list = NewList(0, count, 2);
    Timed(state, [&] { return CRColctTool().DeleteColctByUrl(&list, Wide(Address(0))); });
    RColctItem::DeleteList(list);
  }
}

/// Finds the last collection of a list by its identity.
void FindIdentity(benchmark::State& state, int count) {
  const ColctList list(NewList(0, count, count));
  CColctItemID* const name = CColctItemID::New();
  name->SetColctID(Wide(Numbered(u"", count - 1)));
  for (auto _ : state) Timed(state, [&] { return CColctItemID::FindColctNode(list.get(), name); });
  CColctItemID::Delete(name);
}

/// Removes all pages of an address in random order.
void EmptyUrlMap(benchmark::State& state, int count) {
  std::vector<Item<CUrlNode>> pages;
  for (int i = 0; i < count; ++i) pages.emplace_back(CUrlNode::New());
  std::shuffle(pages.begin(), pages.end(), std::minstd_rand(1));
  for (auto _ : state) {
    const auto item = CUrlMapItem::New(Wide(Address(0)), pages[0].get());
    for (int i = 1; i < count; ++i)
      item->AddUrlNode(pages[static_cast<std::size_t>(i * 7LL % count)].get());
    Timed(state, [&] {
      int left = 0;
      for (const auto& page : pages) left = item->DeleteUrlNode(page.get());
      return left;
    });
    CUrlMapItem::Delete(item);
  }
}

/// Adds tags to a group, with different names in no order, and sorts them.
void SortTags(benchmark::State& state, int count) {
  for (auto _ : state)
    Timed(state, [&] {
      CTagStore store;
      CTagGroup& group = AddGroup(store, u"group");
      for (int i = 0; i < count; ++i)
        AddTag(group, Numbered(u"tag ", static_cast<int>(i * 7919LL % count)));
      group.SortTagItem(true);
      return 0;
    });
}

/// Splits the tags of a page.
void SplitTags(benchmark::State& state, int count) {
  std::u16string text;
  for (int i = 0; i < count; ++i) text += Numbered(u" tag", i);
  const Item<CUrlNode> page(CUrlNode::New());
  for (auto _ : state)
    Timed(state, [&] {
      SetTags(*page, text);
      return 0;
    });
}

/// Copies a pool of engines, finds the last one by its address and removes it.
void CopyEngines(benchmark::State& state, int count) {
  const EnginePool pool = NewEnginePool();
  for (int i = 0; i < count; ++i) AddEngine(*pool, Numbered(u"engine ", i), Address(i));
  for (auto _ : state)
    Timed(state, [&] {
      const EnginePool copy = Copy(*pool);
      return copy->IsThisQueryUrlInMyPool(Wide(Address(count - 1))) &&
             RemoveEngine(*copy, *chain::Last(copy->GetREngineItemHead())->item);
    });
}

/// A tree with pages in folders of 100 each.
Tree NewTreeOf(int count) {
  Tree tree = NewTree<CFolderNode>(u"top");
  RNode* folder = nullptr;
  for (int i = 0; i < count; ++i) {
    if (i % 100 == 0) folder = Add<CFolderNode>(tree, Numbered(u"folder ", i))->GetRNode();
    SetAddress(*Add<CUrlNode>(folder, Numbered(u"page ", static_cast<int>(i * 7919LL % count))),
               Address(i));
  }
  return tree;
}

void CopyTree(benchmark::State& state, int count) {
  const Tree tree = NewTreeOf(count);
  for (auto _ : state) {
    const Tree copy = NewTree<CFolderNode>(u"copy");
    Timed(state, [&] {
      RNTool::AddAllFolderChildren(copy.get(), tree.get());
      return 0;
    });
  }
}

/// Finds the last page of a tree.
void FindPage(benchmark::State& state, int count) {
  const Tree tree = NewTreeOf(count);
  const std::u16string address = Address(count - 1);
  for (auto _ : state) Timed(state, [&] { return Find<CUrlNode>(tree, AtAddress{address}); });
}

/// Sorts the pages of one folder by name, from Z to A.
void SortPages(benchmark::State& state, int count) {
  const Tree folder = NewTree<CFolderNode>(u"folder");
  std::minstd_rand random(1);
  for (int i = 0; i < count; ++i)
    Add<CUrlNode>(folder, Numbered(u"page ", static_cast<int>(random())));
  std::vector<RNode*> row;
  for (RNode* const link : Children(folder.get())) row.push_back(link);
  for (auto _ : state) {
    folder->firstChild = nullptr;
    for (RNode* const link : row) chain::Append(folder->firstChild, link);
    Timed(state, [&] { return folder->firstChild = CSortRNode().Sort(folder->firstChild, false); });
  }
}

[[maybe_unused]] const bool registered = [] {
  const auto add = [](const std::string& name, void (*run)(benchmark::State&, int)) {
    for (const int count : {1000, 10'000, 100'000})
      benchmark::RegisterBenchmark(("Lists/" + name + "/" + std::to_string(count)).c_str(), run,
                                   count)
          ->UseManualTime()
          ->MinTime(0.05);
  };
  add("merge two lists of collections", Merge);
  add("remove duplicate collections", Thin);
  add("remove an address", DeleteByUrl);
  add("find an identity", FindIdentity);
  add("empty an entry of the URL map", EmptyUrlMap);
  add("add tags to a group and sort them", SortTags);
  add("split the tags of a page", SplitTags);
  add("copy a pool of engines, find and remove the last", CopyEngines);
  add("copy a tree", CopyTree);
  add("find a page in a tree", FindPage);
  add("sort the pages of a folder", SortPages);
  return true;
}();

}  // namespace
}  // namespace vosmere::bench
