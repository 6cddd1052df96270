// The items of trees: their texts, loops over them, searches.
//
//   for (CUrlNode& page : Pages(tree))                          // may be left with break
//     if (AddressOf(page) == "http://a.example/") break;
//
//   CFolderNode* news = Find<CFolderNode>(tree, "News");        // null when there is none
//   CUrlNode* page = Find<CUrlNode>(tree, AtAddress{"http://a.example/"});
//   SetAddress(*page, "http://b.example/");
//
// Nothing here is recursive, and loops and searches do not allocate. Null, an empty tree and items
// that are in no tree are allowed as arguments; nothing is found there. The only exception is
// std::bad_alloc, thrown by functions that set a text.
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

/// The classes of items in a tree.
template <class Node>
concept TreeItem = std::same_as<Node, CFolderNode> || std::same_as<Node, CUrlNode> ||
    std::same_as<Node, CColctNode>;
/// One of these, or CBaseNode for all items.
template <class Node>
concept AnyItem = TreeItem<Node> || std::same_as<Node, CBaseNode>;
/// Those that have an address.
template <class Node>
concept AddressItem = TreeItem<Node> && std::derived_from<Node, CUrlNode>;
/// A predicate on items.
template <class Test, class Node>
concept TestOf = std::predicate<Test&, Node&>;

template <TreeItem Node>
constexpr tagNODETYPE NodeTypeOf() {
  if constexpr (std::same_as<Node, CFolderNode>) return NT_FOLDER;
  if constexpr (std::same_as<Node, CUrlNode>) return NT_URL;
  return NT_COLCT;
}

// Parameter types.

/// Something in a tree, given by its link or as the item.
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

/// A place to search or to put something: a tree, a link, a folder, or a collection, which means
/// its local tree.
class Place {
 public:
  Place(std::nullptr_t) {}
  Place(RNode* link) : link_(link) {}
  Place(const Tree& tree) : link_(tree.get()) {}
  Place(const Tree&&) = delete;  // a temporary dies before a loop over it begins
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

// Texts of items, as views.

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

/// Notifies the observer of the item's tree, if there is one, before and after the item is changed.
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

/// Calls `change(item)`, which may set any fields of the item. If the item is in the tree of a
/// store, the change is written to the store's log. A field that is set without Update is only
/// stored by the next checkpoint.
template <std::derived_from<CBaseNode> Node, std::invocable<Node&> Change>
void Update(Node& item, Change&& change) {
  const detail::FieldChange seen(item);
  change(item);
}

// Like the setters of the items, but they throw std::bad_alloc when memory runs out, where those
// silently keep the old text.

inline void SetName(CBaseNode& item, const Wide& name) {
  Update(item, [&](CBaseNode& to) { detail::SetOrThrow([&] { to.SetName(name); }); });
}
inline void SetDescription(CBaseNode& item, const Wide& description) {
  Update(item, [&](CBaseNode& to) { detail::SetOrThrow([&] { to.SetDescription(description); }); });
}
inline void SetAddress(CUrlNode& page, const Wide& address) {
  Update(page, [&](CUrlNode& to) { detail::SetOrThrow([&] { to.SetUrl(address); }); });
}

// Loops.

/// The item of a link if it is of this class, else null. A collection is not a page here, although
/// its class derives from that of pages.
template <AnyItem Node>
Node* As(Link link) {
  if (!link) return nullptr;
  if constexpr (TreeItem<Node>)
    if (link->type != NodeTypeOf<Node>()) return nullptr;
  return static_cast<Node*>(link->item);
}

/// The items of a class below a link, in document order (each before those below it), or only the
/// children. A forward range.
///
/// A loop may change the current item, add items (which may or may not be visited), and remove the
/// current item if it is a page or a collection. It must not remove anything else; RemoveIf also
/// removes folders.
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
    RNode* next_ = nullptr;  // determined in advance, because the loop may remove the current item
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
/// The links of the children. A loop may unlink or free the current one.
inline chain::Cells<RNode> Children(Place parent) {
  return chain::Cells<RNode>(parent ? parent->firstChild : nullptr);
}

// Searches. `top` itself is not searched. Texts are compared case-sensitively, and null equals the
// empty text.

/// A test for Find and RemoveIf: whether an item has this name. It keeps a copy of the name.
struct Named {
  Wide name;
  bool operator()(const CBaseNode& item) const { return NameOf(item) == name.get(); }
};
/// The same for the address of a page, a collection or a search engine. Not for classes without an
/// address.
struct AtAddress {
  Wide address;
  template <class Node>
  auto operator()(const Node& item) const -> decltype(AddressOf(item) == address.get()) {
    return AddressOf(item) == address.get();
  }
};
/// The same for the identity.
struct WithIdentity {
  Wide identity;
  bool operator()(const CBaseNode& item) const { return IdentityOf(item) == identity.get(); }
};

/// The first item of the class below `top` that satisfies the test, or null.
template <AnyItem Node = CBaseNode, TestOf<Node> Test>
Node* Find(Place top, Test&& test) {
  for (Node& item : Range<Node>(top))
    if (test(item)) return &item;
  return nullptr;
}
/// The first item of the class with this name, or null.
template <AnyItem Node = CBaseNode>
Node* Find(Place top, const Wide& name) {
  for (Node& item : Range<Node>(top))
    if (NameOf(item) == name.get()) return &item;
  return nullptr;
}

}  // namespace vosmere
