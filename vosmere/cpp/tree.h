// Trees: walk, find, build, move, remove, copy, sort.
//
//   for (CUrlNode& page : Pages(tree))                          // a break ends it
//     if (AddressOf(page) == "http://a.example/") break;
//
//   CFolderNode* news = Find<CFolderNode>(tree, "News");        // null when there is none
//   CUrlNode* page = Find<CUrlNode>(tree, AtAddress{"http://a.example/"});
//   Add<CFolderNode>(news, "Read later");
//   if (!Move(page, news)) ...                                  // refused: see Move
//   Tree removed = Remove(page);                                // whoever removes it owns it
//
// Nothing recurses, and no walk or search allocates. Null, an empty tree and what stands in no tree
// are allowed everywhere: nothing is found there, and nothing happens. What makes something may
// throw std::bad_alloc, and then nothing has changed; nothing else is thrown.
#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/text.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/sort_node.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_tool.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {

/// The kinds of item that a tree holds.
template <class Node>
concept TreeItem = std::same_as<Node, CFolderNode> || std::same_as<Node, CUrlNode> ||
    std::same_as<Node, CColctNode>;
/// One of them, or CBaseNode for all.
template <class Node>
concept AnyItem = TreeItem<Node> || std::same_as<Node, CBaseNode>;

template <TreeItem Node>
constexpr tagNODETYPE NodeTypeOf() {
  if constexpr (std::same_as<Node, CFolderNode>) return NT_FOLDER;
  if constexpr (std::same_as<Node, CUrlNode>) return NT_URL;
  return NT_COLCT;
}

// What the operations take.

/// Something that stands in a tree, by its link or as the item itself.
class Link {
 public:
  Link(std::nullptr_t = nullptr) {}
  Link(RNode* link) : link_(link) {}
  Link(const Tree& tree) : link_(tree.get()) {}
  Link(const CBaseNode& item) : link_(item.GetRNode()) {}
  Link(const CBaseNode* item) : link_(item ? item->GetRNode() : nullptr) {}

  operator RNode*() const { return link_; }
  RNode* operator->() const { return link_; }

 private:
  RNode* link_ = nullptr;
};

/// Where to look, or to put something: a whole tree, a link, a folder, or a collection, which
/// stands for its local tree.
class Place {
 public:
  Place(std::nullptr_t) {}
  Place(RNode* link) : link_(link) {}
  Place(const Tree& tree) : link_(tree.get()) {}
  Place(const Tree&&) = delete;  // it would be gone before the walk begins
  Place(const CFolderNode& folder) : link_(folder.GetRNode()) {}
  Place(const CFolderNode* folder) : link_(folder ? folder->GetRNode() : nullptr) {}
  Place(const CColctNode& colct) : link_(colct.GetLocRNodeRoot()) {}
  Place(const CColctNode* colct) : link_(colct ? colct->GetLocRNodeRoot() : nullptr) {}
  Place(const Collection& colct) : Place(colct.get()) {}
  Place(const Collection&&) = delete;

  operator RNode*() const { return link_; }
  RNode* operator->() const { return link_; }

 private:
  RNode* link_ = nullptr;
};

// Texts of items, where they are.

inline TextView NameOf(const CBaseNode& item) {
  return item.GetName();
}
inline TextView NameOf(const RNode* link) {
  return link && link->item ? link->item->GetName() : nullptr;
}
inline TextView DescriptionOf(const CBaseNode& item) {
  return item.GetDescription();
}
inline TextView IdentityOf(const CBaseNode& item) {
  return item.GetUUID();
}
inline TextView AddressOf(const CUrlNode& page) {
  return page.GetUrl();
}
inline TextView AddressOf(const CEngineNode& engine) {
  return engine.GetUrl();
}

// They do what the setters do, and throw std::bad_alloc where those would keep the old text.

inline void SetName(CBaseNode& item, const Wide& name) {
  detail::SetOrThrow([&] { item.SetName(name); });
}
inline void SetDescription(CBaseNode& item, const Wide& description) {
  detail::SetOrThrow([&] { item.SetDescription(description); });
}
inline void SetAddress(CUrlNode& page, const Wide& address) {
  detail::SetOrThrow([&] { page.SetUrl(address); });
}

// Walks.

/// The item of a link when it is of this kind, else null. A collection is no page.
template <AnyItem Node>
Node* As(Link link) {
  if (!link) return nullptr;
  if constexpr (TreeItem<Node>)
    if (link->type != NodeTypeOf<Node>()) return nullptr;
  return static_cast<Node*>(link->item);
}

/// The items of a kind below a link, in the order of documents: each before what is below it, or
/// the children alone. A forward range.
///
/// A loop may change its item, add what it likes (which may or may not come up), and remove a page
/// or a collection that it was given, but nothing else; RemoveIf removes folders too.
template <AnyItem Node, bool kChildrenOnly = false>
class Range {
 public:
  class iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using pointer = Node*;
    using reference = Node&;

    iterator() = default;
    explicit iterator(RNode* top) : top_(top), next_(top ? top->firstChild : nullptr) { ++*this; }

    Node& operator*() const { return *item_; }
    Node* operator->() const { return item_; }
    iterator& operator++() {
      do {
        item_ = As<Node>(next_);
        if (next_) Step();
      } while (!item_ && next_);
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const iterator& other) const { return item_ == other.item_; }

   private:
    void Step() {
      if (!kChildrenOnly && next_->firstChild) {
        next_ = next_->firstChild;
        return;
      }
      if constexpr (!kChildrenOnly)
        while (!next_->next && next_->parent && next_->parent != top_) next_ = next_->parent;
      next_ = next_->next;
    }

    RNode* top_ = nullptr;
    RNode* next_ = nullptr;  // found before the item is handed out, since that may be removed
    Node* item_ = nullptr;
  };

  explicit Range(Place top) : top_(top) {}
  iterator begin() const { return iterator(top_); }
  iterator end() const { return iterator(); }

 private:
  RNode* top_;
};

inline Range<CUrlNode> Pages(Place top) {
  return Range<CUrlNode>(top);
}
inline Range<CFolderNode> Folders(Place top) {
  return Range<CFolderNode>(top);
}
inline Range<CColctNode> Collections(Place top) {
  return Range<CColctNode>(top);
}
inline Range<CBaseNode> Items(Place top) {
  return Range<CBaseNode>(top);
}
template <AnyItem Node>
Range<Node, true> Children(Place parent) {
  return Range<Node, true>(parent);
}
/// The links of the children; a loop may unlink or free the one that it was given.
inline chain::Cells<RNode> Children(Place parent) {
  return chain::Cells<RNode>(parent ? parent->firstChild : nullptr);
}

// Searches. Texts compare exactly.

struct Named {
  Wide name;
  bool operator()(const CBaseNode& item) const { return NameOf(item) == name.get(); }
};
struct AtAddress {
  Wide address;
  template <class Node>
  auto operator()(const Node& item) const -> decltype(AddressOf(item) == address.get()) {
    return AddressOf(item) == address.get();
  }
};
struct WithIdentity {
  Wide identity;
  bool operator()(const CBaseNode& item) const { return IdentityOf(item) == identity.get(); }
};

/// The first item of the kind below `top` that satisfies the test; null for none.
template <AnyItem Node = CBaseNode, class Test>
requires std::predicate<Test&, Node&> Node* Find(Place top, Test&& test) {
  for (Node& item : Range<Node>(top))
    if (test(item)) return &item;
  return nullptr;
}
/// The first one of that name.
template <AnyItem Node = CBaseNode>
Node* Find(Place top, const Wide& name) {
  for (Node& item : Range<Node>(top))
    if (NameOf(item) == name.get()) return &item;
  return nullptr;
}

// Building.

/// A tree of this item alone.
template <TreeItem Node>
Tree NewTree(Item<Node> item) {
  Tree tree(RNode::New2(item.get(), NodeTypeOf<Node>()));
  if (!tree) throw std::bad_alloc();
  item.release();
  return tree;
}
/// A tree of a new item alone.
template <TreeItem Node = CFolderNode>
Tree NewTree(const Wide& name) {
  Item<Node> item(Node::New());
  if (!item) throw std::bad_alloc();
  SetName(*item, name);
  return NewTree(std::move(item));
}
/// The same with an address; it stays "about:blank" when this one has 2085 units or more.
template <TreeItem Node>
requires std::derived_from<Node, CUrlNode> Tree NewTree(const Wide& name, const Wide& address) {
  Tree tree = NewTree<Node>(name);
  SetAddress(*As<Node>(tree), address);
  return tree;
}
/// A collection without items, with a local tree to put them in.
inline Collection NewCollection(const Wide& name) {
  Collection colct(CColctNode::New());
  if (!colct) throw std::bad_alloc();
  SetName(*colct, name);
  colct->SetLocRNodeRoot(NewTree(name).release());
  return colct;
}

/// Whether `link` is `top` or stands below it.
inline bool IsWithin(Link link, Link top) {
  if (!link || !top) return false;
  const RNode* at = link;
  while (at != top && top->firstChild && at->parent) at = at->parent;
  return at == top;
}

/// Puts a tree into a folder, right before `before` or as the last. True when it took it; else
/// nothing has changed: when the tree is empty, holds the folder or stands in another already, the
/// place is no folder, or `before` is not directly in it.
inline bool Add(Place folder, Tree&& tree, Link before = nullptr) {
  if (!tree || tree->parent || !folder || folder->type != NT_FOLDER ||
      IsWithin(Link(folder), tree) || (before && before->parent != folder))
    return false;
  if (before)
    RNTool::InsertBefore(before, tree.release());
  else
    RNTool::InsertAsChild(folder, tree.release());
  return true;
}
/// Makes an item as the last of a folder; the tree owns it. Null when the place is no folder.
template <TreeItem Node>
Node* Add(Place folder, const Wide& name) {
  Tree tree = NewTree<Node>(name);
  auto* const item = As<Node>(tree);
  return Add(folder, std::move(tree)) ? item : nullptr;
}
/// The same with the address of a page or collection.
template <TreeItem Node>
requires std::derived_from<Node, CUrlNode> Node* Add(Place folder, const Wide& name,
                                                     const Wide& address) {
  Tree tree = NewTree<Node>(name, address);
  auto* const item = As<Node>(tree);
  return Add(folder, std::move(tree)) ? item : nullptr;
}

// Changing.

/// Moves something with all below it into a folder, of this tree or another, right before `before`
/// or as the last. False, with nothing changed, when it is a root, it would come to stand in
/// itself, the place is no folder, or `before` is not directly in it.
inline bool Move(Link what, Place folder, Link before = nullptr) {
  if (!what || !what->parent || !folder || folder->type != NT_FOLDER ||
      IsWithin(Link(folder), what) || (before && before->parent != folder))
    return false;
  RNTool::MoveRNodeInDataTree(folder, what, before);
  return true;
}

/// Takes something with all below it out of its tree. Empty for a root, which has an owner already.
inline Tree Remove(Link what) {
  if (!what || !what->parent) return nullptr;
  RNode* const link = what;
  chain::Unlink(link->parent->firstChild, link);
  link->parent = nullptr;
  return Tree(link);
}

/// Frees every item of the kind below `top` that satisfies the test, with all below it, and says
/// how many satisfied it. What is in a folder is asked before the folder.
template <AnyItem Node = CBaseNode, class Test>
requires std::predicate<Test&, Node&>
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

/// Sorts the children of a folder: from A to Z without regard to ASCII case, or the earliest first.
/// A name that another begins with counts as equal to it (sort_node.h), and equals stay as they
/// are.
inline void Sort(Place folder, SortBy by = SortBy::kName, bool descending = false) {
  if (!folder) return;
  CSortRNode sorter;
  RNode*& head = folder->firstChild;
  switch (by) {
    case SortBy::kName: head = sorter.Sort(head, !descending); break;
    case SortBy::kAdded: head = sorter.SortByCreateTime(head, !descending); break;
    case SortBy::kModified: head = sorter.SortByModifyTime(head, !descending); break;
    case SortBy::kLastVisited: head = sorter.SortByVisitTime(head, !descending); break;
  }
}

// Copying.

/// A copy in no tree, without what is below it.
template <class Node>
requires std::same_as<Node, CFolderNode> || std::same_as<Node, CUrlNode> ||
    std::same_as<Node, CEngineNode>
        Item<Node> Copy(const Node& item) {
  Item<Node> copy(Node::New(const_cast<Node*>(&item)));
  if (!copy) throw std::bad_alloc();
  return copy;
}

namespace detail {

inline Tree CopyLink(RNode* link) {
  if (auto* folder = As<CFolderNode>(link)) return NewTree(Copy(*folder));
  if (auto* page = As<CUrlNode>(link)) return NewTree(Copy(*page));
  Item<CColctNode> colct(CColctNode::New(As<CColctNode>(link)));
  if (!colct) throw std::bad_alloc();
  colct->SetLocRNodeRoot(nullptr);
  return NewTree(std::move(colct));
}

}  // namespace detail

/// A copy of a link with all below it; links without an item are left out. Its collections have no
/// local trees, which have an owner.
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
/// With a local tree of its own.
inline Collection Copy(const CColctNode& source) {
  Collection colct(CColctNode::New(const_cast<CColctNode*>(&source)));
  if (!colct) throw std::bad_alloc();
  colct->SetLocRNodeRoot(nullptr);  // the source's
  colct->SetLocRNodeRoot(Copy(source.GetLocRNodeRoot()).release());
  return colct;
}

}  // namespace vosmere
