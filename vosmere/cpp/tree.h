// Building, changing, copying and sorting trees.
//
//   const Tree tree = NewTree("Bookmarks");
//   CFolderNode* news = Add<CFolderNode>(tree, "News");
//   CUrlNode* page = Add<CUrlNode>(news, "Weather", "http://weather.example/");
//   if (!Move(page, tree)) ...                                  // not possible: see Move
//   Tree removed = Remove(page);                                // the caller owns what it removes
//   Add(news, std::move(removed));
//
// Null, an empty or moved-from tree and items that are in no tree are allowed as arguments; nothing
// happens then. Functions that create something may throw std::bad_alloc, with nothing changed; no
// other exception is thrown. Changes in the tree of a store are written to its log.
#pragma once

#include <concepts>
#include <new>
#include <utility>

#include "vosmere/base/chain.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/engines/engine_node.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/sort_node.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_observer.h"
#include "vosmere/tree/tree_tool.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {

// Building.

/// A tree that consists of this item; empty for an empty handle. If it throws, the item is freed.
template <TreeItem Node>
Tree NewTree(Item<Node> item) {
  if (!item) return nullptr;
  Tree tree(RNode::New2(item.get(), NodeTypeOf<Node>()));
  if (!tree) detail::ThrowNoMemory();
  static_cast<void>(item.release());  // it is the tree's now
  return tree;
}
/// A tree that consists of a new item.
template <TreeItem Node = CFolderNode>
Tree NewTree(const Wide& name) {
  Item<Node> item(Node::New());
  if (!item) detail::ThrowNoMemory();
  SetName(*item, name);
  return NewTree(std::move(item));
}
/// The same with an address. An address of 2085 code units or more is ignored; "about:blank" stays.
template <AddressItem Node>
Tree NewTree(const Wide& name, const Wide& address) {
  Tree tree = NewTree<Node>(name);
  SetAddress(*As<Node>(tree), address);
  return tree;
}
/// A new collection with an empty local tree.
inline Collection NewCollection(const Wide& name) {
  Collection colct(CColctNode::New());
  if (!colct) detail::ThrowNoMemory();
  SetName(*colct, name);
  colct->SetLocRNodeRoot(NewTree(name).release());
  return colct;
}

/// Whether `link` is `top` or below it.
inline bool IsWithin(Link link, Link top) {
  if (!link || !top) return false;
  const RNode* at = link;
  while (at != top && top->firstChild && at->parent) at = at->parent;
  return at == top;
}

namespace detail {

inline RNode* LocalTreeOf(Link link) {
  CColctNode* const colct = As<CColctNode>(link);
  return colct ? colct->GetLocRNodeRoot() : nullptr;
}

/// Whether `root` is the root of the local tree of a collection at or below `top`, or of one in
/// such a local tree.
inline bool HasLocalTree(RNode* top, const RNode* root) {
  const auto leadsTo = [&](RNode* local) {
    return local && (local == root || HasLocalTree(local, root));
  };
  if (leadsTo(LocalTreeOf(top))) return true;
  for (CColctNode& colct : Collections(top))
    if (leadsTo(colct.GetLocRNodeRoot())) return true;
  return false;
}

/// Whether putting `top` into a folder would make a circle: the folder is inside it, or inside the
/// local tree of a collection in it.
inline bool Encloses(RNode* top, RNode* folder) {
  if (IsWithin(folder, top)) return true;
  if (!top->firstChild && !LocalTreeOf(top)) return false;
  const auto rootOf = [](const RNode* link) {
    while (link->parent) link = link->parent;
    return link;
  };
  const RNode* const root = rootOf(folder);
  return root != rootOf(top) && HasLocalTree(top, root);
}

}  // namespace detail

/// Moves a tree into a folder, directly before `before` or as the last child. `tree` is then empty,
/// and its links stay valid. Returns false, with nothing changed, if the tree is empty, contains
/// the folder (also in the local tree of a collection) or is already part of another tree, if the
/// place is not a folder, or if `before` is not a child of it.
inline bool Add(Place folder, Tree&& tree, Link before = nullptr) {
  if (!tree || tree->parent || !folder || folder->type != NT_FOLDER ||
      detail::Encloses(tree.get(), folder) || (before && before->parent != folder))
    return false;
  if (TreeObserver* const observer = TreeObserver::Of(folder))
    observer->Adding(folder, tree.get(), before);
  if (before)
    RNTool::InsertBefore(before, tree.release());
  else
    RNTool::InsertAsChild(folder, tree.release());
  return true;
}
/// Adds a new item as the last child of a folder. The tree owns it. Null if the place is not a
/// folder.
template <TreeItem Node>
Node* Add(Place folder, const Wide& name) {
  Tree tree = NewTree<Node>(name);
  auto* const item = As<Node>(tree);
  return Add(folder, std::move(tree)) ? item : nullptr;
}
/// The same with the address of the page or collection.
template <AddressItem Node>
Node* Add(Place folder, const Wide& name, const Wide& address) {
  Tree tree = NewTree<Node>(name, address);
  auto* const item = As<Node>(tree);
  return Add(folder, std::move(tree)) ? item : nullptr;
}

// Changing.

/// Moves an item, with everything below it, into a folder of this or another tree, directly before
/// `before` or as the last child; before itself, it stays where it is. Returns false, with nothing
/// changed, if the item is a root, if the folder is inside it (also in the local tree of a
/// collection), if the place is not a folder, or if `before` is not a child of it.
inline bool Move(Link what, Place folder, Link before = nullptr) {
  if (!what || !what->parent || !folder || folder->type != NT_FOLDER ||
      detail::Encloses(what, folder) || (before && before->parent != folder))
    return false;
  TreeObserver* const from = TreeObserver::Of(what);
  TreeObserver* const to = TreeObserver::Of(folder);
  if (from && from == to) {
    from->Moving(what, folder, before);
  } else {
    if (from) from->Removing(what);
    if (to) to->Adding(folder, what, before);
  }
  RNTool::MoveRNodeInDataTree(folder, what, before);
  return true;
}

/// Removes an item, with everything below it, from its tree and returns it. Empty for a root, which
/// already has an owner. The local trees of collections in it are nobody's then (own.h).
inline Tree Remove(Link what) {
  if (!what || !what->parent) return nullptr;
  RNode* const link = what;
  if (TreeObserver* const observer = TreeObserver::Of(link)) observer->Removing(link);
  chain::Unlink(link->parent->firstChild, link);
  link->parent = nullptr;
  return Tree(link);
}

/// Frees every item of the kind below `top` that satisfies the test, with everything below it, and
/// returns how many satisfied it. The contents of a folder are tested before the folder.
template <AnyItem Node = CBaseNode, TestOf<Node> Test>
int RemoveIf(Place top, Test&& test) {
  int count = 0;
  const auto removeIf = [&](RNode* link) {
    Node* const item = As<Node>(link);
    if (!item || !test(*item)) return;
    Remove(link);
    ++count;
  };
  if (top)
    WalkBelow(
        top, [](RNode*) { return true; }, removeIf);
  return count;
}

enum class SortBy { kName, kAdded, kModified, kLastVisited };

/// Sorts the children of a folder, not those below them, by name, case-insensitive (ASCII), or by
/// time, the earliest first. Stable. A name that is the beginning of another one is equal to it
/// (sort_node.h).
inline void Sort(Place folder, SortBy by = SortBy::kName, bool descending = false) {
  if (!folder) return;
  TreeObserver* const observer = TreeObserver::Of(folder);
  if (observer) observer->Sorting(folder);
  CSortRNode sorter;
  RNode*& head = folder->firstChild;
  switch (by) {
    case SortBy::kName: head = sorter.Sort(head, !descending); break;
    case SortBy::kAdded: head = sorter.SortByCreateTime(head, !descending); break;
    case SortBy::kModified: head = sorter.SortByModifyTime(head, !descending); break;
    case SortBy::kLastVisited: head = sorter.SortByVisitTime(head, !descending); break;
  }
  if (observer) observer->Sorted(folder);
}

// Copying.

/// The items whose New copies everything that they own.
template <class Node>
concept CopiedItem = std::same_as<Node, CFolderNode> || std::same_as<Node, CUrlNode> ||
    std::same_as<Node, CEngineNode>;

/// A copy of the item alone, in no tree.
template <CopiedItem Node>
Item<Node> Copy(const Node& item) {
  Item<Node> copy(Node::New(const_cast<Node*>(&item)));
  if (!copy) detail::ThrowNoMemory();
  return copy;
}

namespace detail {

inline Tree CopyLink(RNode* link) {
  if (auto* folder = As<CFolderNode>(link)) return NewTree(Copy(*folder));
  if (auto* page = As<CUrlNode>(link)) return NewTree(Copy(*page));
  Item<CColctNode> colct(CColctNode::New(As<CColctNode>(link)));
  if (!colct) detail::ThrowNoMemory();
  colct->SetLocRNodeRoot(nullptr);
  return NewTree(std::move(colct));
}

}  // namespace detail

/// A copy of a link with everything below it. Links without an item are left out. Collections are
/// copied without their local trees, since a Tree does not own these.
inline Tree Copy(RNode* top) {
  if (!top || !top->item) return nullptr;
  Tree copy = detail::CopyLink(top);
  RNode* folder = copy.get();
  WalkBelow(
      top,
      [&](RNode* link) {
        if (!link->item) return false;
        RNode* const child = detail::CopyLink(link).release();
        RNTool::InsertAsChild(folder, child);
        folder = child;
        return true;
      },
      [&](RNode* link) {
        if (link->item) folder = folder->parent;
      });
  return copy;
}
inline Tree Copy(const Tree& tree) {
  return Copy(tree.get());
}
/// A copy with a copy of the local tree.
inline Collection Copy(const CColctNode& source) {
  Collection colct(CColctNode::New(const_cast<CColctNode*>(&source)));
  if (!colct) detail::ThrowNoMemory();
  colct->SetLocRNodeRoot(nullptr);  // that of the source, which must not be freed if Copy throws
  colct->SetLocRNodeRoot(Copy(source.GetLocRNodeRoot()).release());
  return colct;
}

}  // namespace vosmere
