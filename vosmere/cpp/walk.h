// Items of trees: their texts, walks over them, searches.
//
//   for (CUrlNode& page : Pages(tree))                          // a break ends it
//     if (AddressOf(page) == "http://a.example/") break;
//
//   CFolderNode* news = Find<CFolderNode>(tree, "News");        // null when there is none
//   CUrlNode* page = Find<CUrlNode>(tree, AtAddress{"http://a.example/"});
//   SetAddress(*page, "http://b.example/");
//
// Nothing recurses, and no walk or search allocates. Null, an empty tree and what stands in no tree
// are allowed: nothing is found there. Nothing is thrown but std::bad_alloc, where a text is set.
#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>

#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/text.h"
#include "vosmere/engines/engine_node.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_observer.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {

/// The kinds of item that a tree holds.
template <class Node>
concept TreeItem = std::same_as<Node, CFolderNode> || std::same_as<Node, CUrlNode> ||
    std::same_as<Node, CColctNode>;
/// One of them, or CBaseNode for all.
template <class Node>
concept AnyItem = TreeItem<Node> || std::same_as<Node, CBaseNode>;
/// Those that have an address.
template <class Node>
concept AddressItem = TreeItem<Node> && std::derived_from<Node, CUrlNode>;
/// A function or object that says yes or no to an item.
template <class Test, class Node>
concept TestOf = std::predicate<Test&, Node&>;

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

namespace detail {

/// Tells the observer of an item's tree, if it has one, before the item is changed and after.
class FieldChange {
 public:
  explicit FieldChange(const CBaseNode& item)
      : link_(item.GetRNode()), observer_(TreeObserver::Of(link_)) {
    if (observer_) observer_->Changing(link_);
  }
  FieldChange(const FieldChange&) = delete;
  FieldChange& operator=(const FieldChange&) = delete;
  ~FieldChange() {
    if (observer_) observer_->Changed(link_);
  }

 private:
  RNode* link_;
  TreeObserver* observer_;
};

}  // namespace detail

/// Calls `change(item)`, which may set what it likes of the item. In the tree of a store, what is
/// set in this way is in the store's log; what is set without it is not until the next checkpoint.
template <std::derived_from<CBaseNode> Node, std::invocable<Node&> Change>
void Update(Node& item, Change&& change) {
  const detail::FieldChange seen(item);
  change(item);
}

// They do what the setters do, and throw std::bad_alloc where those would keep the old text.

inline void SetName(CBaseNode& item, const Wide& name) {
  Update(item, [&](CBaseNode& to) { detail::SetOrThrow([&] { to.SetName(name); }); });
}
inline void SetDescription(CBaseNode& item, const Wide& description) {
  Update(item, [&](CBaseNode& to) { detail::SetOrThrow([&] { to.SetDescription(description); }); });
}
inline void SetAddress(CUrlNode& page, const Wide& address) {
  Update(page, [&](CUrlNode& to) { detail::SetOrThrow([&] { to.SetUrl(address); }); });
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
template <AnyItem Node = CBaseNode, TestOf<Node> Test>
Node* Find(Place top, Test&& test) {
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

}  // namespace vosmere
