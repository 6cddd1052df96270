// Lists as movable values: of collections, references to items, FTP sites, search engines, tags.
//
//   CFtpConBase& site = Append(sites);                          // a new one at the end
//   for (CFtpConBase& site : Each(sites)) ...                   // a break ends it
//   CColctNode* colct = FindIn(list, AtAddress{"http://a.example/feed"});
//   ColctList gone = Merge(list, std::move(fresh));
//   AddEngine(*pool, "Images", "http://images.example/?q=%s");
//   SetTags(page, "news feeds");
//
// Functions that create something may throw std::bad_alloc, with nothing changed; no other
// exception is thrown. A moved-from list is empty.
#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

#include "vosmere/base/chain.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/collections/colct_tool.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/tree.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/engines/engine_pool.h"
#include "vosmere/tags/tag_store.h"

namespace vosmere {

// All lists.

namespace detail {

/// The element that a loop over a list yields: the item of a cell, a text as a view, or the cell
/// itself if it is the item.
template <class Cell>
decltype(auto) Element(Cell& cell) {
  if constexpr (requires { cell.item; })
    return *cell.item;
  else if constexpr (requires { TextView(cell.data); })
    return TextView(cell.data);
  else if constexpr (requires { cell.data; })
    return *cell.data;
  else
    return (cell);
}

template <class Cell>
using ElementOf = std::remove_reference_t<decltype(Element(std::declval<Cell&>()))>;

}  // namespace detail

/// The items of a list in order. A loop may unlink or free the current item.
template <class Cell>
class ListRange {
 public:
  class Iterator : private chain::Cells<Cell>::Iterator {
    using Cells = typename chain::Cells<Cell>::Iterator;

   public:
    explicit Iterator(Cell* cell) : Cells(cell) {}
    decltype(auto) operator*() const { return detail::Element(*Cells::operator*()); }
    Iterator& operator++() {
      Cells::operator++();
      return *this;
    }
    bool operator!=(const Iterator& other) const { return Cells::operator!=(other); }
  };

  explicit ListRange(Cell* head) : head_(head) {}
  Iterator begin() const { return Iterator(head_); }
  Iterator end() const { return Iterator(nullptr); }

 private:
  Cell* head_;
};

template <class Cell>
ListRange<Cell> Each(Cell* head) {
  return ListRange<Cell>(head);
}
template <class Cell, auto Free>
ListRange<Cell> Each(const Owned<Cell, Free>& list) {
  return ListRange<Cell>(list.get());
}
template <class Cell, auto Free>
void Each(const Owned<Cell, Free>&& list) = delete;  // a temporary dies before the loop begins

/// The first item that satisfies the test; null for none.
template <class Cell, auto Free, class Test>
detail::ElementOf<Cell>* FindIn(const Owned<Cell, Free>& list, Test&& test) {
  for (auto& item : Each(list))
    if (test(item)) return &item;
  return nullptr;
}

/// Appends an item, which the list then owns, and returns it; null for null. If it throws, the item
/// is freed.
template <class Cell, auto Free, class Thing, class Delete>
Thing* Append(Owned<Cell, Free>& list, std::unique_ptr<Thing, Delete> item) {
  if (!item) return nullptr;
  Cell* const cell = Cell::New(item.get());
  if (!cell) detail::ThrowNoMemory();
  Cell* head = list.release();
  chain::Append(head, cell);
  list.reset(head);
  return item.release();
}
/// Appends a new item.
template <class Cell, auto Free, class Thing = detail::ElementOf<Cell>>
Thing& Append(Owned<Cell, Free>& list) {
  std::unique_ptr<Thing, decltype(&Thing::Delete)> item(Thing::New(), &Thing::Delete);
  if (!item) detail::ThrowNoMemory();
  return *Append(list, std::move(item));
}
/// Appends all items of `more`, which may be empty.
template <class Cell, auto Free>
void Join(Owned<Cell, Free>& list, Owned<Cell, Free> more) {
  Cell* head = list.release();
  chain::AppendChain(head, more.release());
  list.reset(head);
}

// Lists of collections. Addresses are compared case-sensitively.

namespace detail {

/// Frees the local trees that an operation has left without a collection. The operations on lists
/// do not own local trees and do not free them.
class LocalTrees {
 public:
  void Add(const ColctList& list) {
    for (const CColctNode& colct : Each(list)) roots_.insert(colct.GetLocRNodeRoot());
  }
  void Keep(const ColctList& list) {
    for (const CColctNode& colct : Each(list)) roots_.erase(colct.GetLocRNodeRoot());
  }
  void FreeTheRest() const {
    for (RNode* root : roots_) DeleteTree(root);
  }

 private:
  std::unordered_set<RNode*> roots_;
};

/// Calls `change(&head)`, then frees the local trees of the collections that it freed.
template <class Change>
bool ChangeList(ColctList& list, Change change) {
  LocalTrees trees;
  trees.Add(list);
  RColctItem* head = list.release();
  const bool changed = change(&head);
  list.reset(head);
  trees.Keep(list);
  trees.FreeTheRest();
  return changed;
}

}  // namespace detail

/// Frees every collection whose address occurs earlier in the list. Returns whether there was one.
inline bool RemoveDuplicates(ColctList& list) {
  return detail::ChangeList(
      list, [](RColctItem** head) { return CRColctTool().DeleteDuplcateColct(*head); });
}
/// Frees every collection with this address. Returns whether there was one.
inline bool RemoveAddress(ColctList& list, const Wide& address) {
  return detail::ChangeList(
      list, [&](RColctItem** head) { return CRColctTool().DeleteColctByUrl(head, address); });
}

/// Replaces `list` by a newly read one and returns the collections that the new one lacks. A
/// collection with the address of an old one (of the last, if there are several) takes over its
/// local tree and, if `keepNetData`, its network settings, identity, base build and checked-in
/// state; its cell is marked. Local trees that no collection has any more are freed.
inline ColctList Merge(ColctList& list, ColctList fresh, bool keepNetData = true) {
  detail::LocalTrees trees;
  trees.Add(list);
  trees.Add(fresh);
  std::vector<RNode*> freshTrees;
  for (const CColctNode& colct : Each(fresh)) freshTrees.push_back(colct.GetLocRNodeRoot());

  CRColctTool tool;
  tool.SetKeepOldColctNetData(keepNetData);
  RColctItem* old = list.release();
  RColctItem* gone = nullptr;
  tool.UpdateRColctItemList(fresh.get(), &old, &gone);
  RColctItem::DeleteList(old);

  auto freshTree = freshTrees.begin();
  for (CColctNode& colct : Each(fresh)) {  // the old collection may have had no local tree
    if (!colct.GetLocRNodeRoot()) colct.SetLocRNodeRoot(*freshTree);
    ++freshTree;
  }
  list = std::move(fresh);
  ColctList removed(gone);
  trees.Keep(list);
  trees.Keep(removed);
  trees.FreeTheRest();
  return removed;
}

/// Looks up the collection and the item that `name` refers to, in `list` and the top level of its
/// local trees. Returns whether both were found; name.GetRefColctNode and name.GetRefUrlNode return
/// them.
inline bool Resolve(CColctItemID& name, const ColctList& list) {
  return CColctItemID::FindColctUrlNode(list.get(), &name);
}

// Search engines.

using EnginePool = Item<CEnginePool>;

inline EnginePool NewEnginePool() {
  EnginePool pool(CEnginePool::New());
  if (!pool) detail::ThrowNoMemory();
  return pool;
}
inline ListRange<REngineItem> Engines(const CEnginePool& pool) {
  return Each(pool.GetREngineItemHead());
}
/// Appends an engine, which the pool then owns, and returns it; null for null. If it throws, the
/// engine is freed.
inline CEngineNode* AddEngine(CEnginePool& pool, Item<CEngineNode> engine) {
  if (engine && !pool.AppendEngine(engine.get())) detail::ThrowNoMemory();
  return engine.release();
}
/// Appends a new engine. An address of 2085 code units or more becomes "about:blank", a type that
/// long "web".
inline CEngineNode& AddEngine(CEnginePool& pool, const Wide& name, const Wide& address,
                              const Wide& searchType = nullptr) {
  Item<CEngineNode> engine(CEngineNode::New());
  if (!engine) detail::ThrowNoMemory();
  detail::SetOrThrow([&] {
    engine->SetName(name);
    engine->SetUrl(address);
    engine->SetSearchType(searchType);
  });
  return *AddEngine(pool, std::move(engine));
}
/// Removes an engine from the pool and returns it; empty if it is not in this pool.
inline Item<CEngineNode> RemoveEngine(CEnginePool& pool, CEngineNode& engine) {
  return Item<CEngineNode>(pool.RemoveEngine(&engine) ? &engine : nullptr);
}
/// A copy of the pool with copies of the engines.
inline EnginePool Copy(const CEnginePool& source) {
  EnginePool pool(CEnginePool::New(const_cast<CEnginePool*>(&source)));
  if (!pool) detail::ThrowNoMemory();
  pool->REngineItemHeadChange(nullptr);  // the copy points to the engines of the source
  for (const CEngineNode& engine : Engines(source)) AddEngine(*pool, Copy(engine));
  return pool;
}

// The tags of a page, as views. They are compared case-insensitively (ASCII).

inline ListRange<CUrlProp::TagList> Tags(const CUrlNode& page) {
  const CUrlProp* const properties = page.GetUrlProp();
  return Each(properties ? properties->GetTagsHead() : nullptr);
}
inline bool HasTag(const CUrlNode& page, const Wide& tag) {
  const CUrlProp* const properties = page.GetUrlProp();
  return properties && properties->HasTag(tag);
}
/// Replaces the tags of the page by those in a text, separated by blanks, commas, semicolons and
/// line ends. Null removes all.
inline void SetTags(CUrlNode& page, const Wide& text) {
  CUrlProp* const properties = page.GetUrlProp();
  const SystemString parts(SysAllocString(text));
  if (!properties || (text && !parts)) detail::ThrowNoMemory();
  PageTagList tags;
  detail::SetOrThrow([&] { tags.reset(CUrlProp::GenerateRBstrItemList(parts.get())); });
  const PageTagList before(properties->DetachTagsHead());
  properties->SetTagsList(tags.release());
}
/// Adds one tag, without splitting the text, unless the page has it. Null is ignored.
inline void AddTag(CUrlNode& page, const Wide& tag) {
  if (!tag || HasTag(page, tag)) return;
  CUrlProp* const properties = page.GetUrlProp();
  CUrlProp::TagList* const cell = properties ? CUrlProp::CreateRBstrItem(tag) : nullptr;
  if (!cell) detail::ThrowNoMemory();
  CUrlProp::TagList* head = properties->DetachTagsHead();
  chain::Append(head, cell);
  properties->SetTagsList(head);
}

// The user's tags in groups.

inline ListRange<CTagStore::TagGroupList> Groups(const CTagStore& store) {
  return Each(store.GetTagGroupHead());
}
inline ListRange<CTagGroup::TagItemList> Tags(const CTagGroup& group) {
  return Each(group.GetTagItemHead());
}
/// Appends a new group. A group without a name becomes the default group.
inline CTagGroup& AddGroup(CTagStore& store, const Wide& name) {
  TagGroup group(CTagStore::CreateTagGroup());
  if (!group) detail::ThrowNoMemory();
  detail::SetOrThrow([&] { group->SetName(name); });
  if (!store.AddTagGroup(group.get())) detail::ThrowNoMemory();
  return *group.release();
}
/// Appends a new tag to a group.
inline CTagItem& AddTag(CTagGroup& group, const Wide& name, int count = 1) {
  Tag tag(CTagStore::CreateTagItem());
  if (!tag) detail::ThrowNoMemory();
  detail::SetOrThrow([&] { tag->SetName(name); });
  tag->SetCount(count);
  if (!group.AddTagItem(tag.get())) detail::ThrowNoMemory();
  return *tag.release();
}

}  // namespace vosmere
