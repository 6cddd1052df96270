// The library for C++ callers: owning handles that call the right `Delete`, standard strings,
// ranges. Header-only; it adds no second model, and everything it hands out is the library's own.
#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "vosmere/base/chain.h"
#include "vosmere/base/system_string.h"
#include "vosmere/collections/colct_item.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/favorites/favorite.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/tree_tool.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {

/// Calls `Free` on what it is given.
template <auto Free>
struct FreeWith {
  template <class Owned>
  void operator()(Owned* owned) const {
    Free(owned);
  }
};

/// A whole tree: the root link, everything below it, and all their items.
using Tree = std::unique_ptr<RNode, FreeWith<DeleteTree>>;
/// An item that is in no tree yet.
template <class Node>
using Item = std::unique_ptr<Node, FreeWith<CBaseNode::Delete>>;
/// A collection in no tree and list, with its local tree.
using Collection = std::unique_ptr<CColctNode, FreeWith<DeleteWithLocalTree>>;
/// A list of collections with its collections.
using ColctList = std::unique_ptr<RColctItem, FreeWith<RColctItem::DeleteList>>;
/// A list of favorites.
using FavoriteList = std::unique_ptr<CFavorite, FreeWith<CFavorite::DeleteList>>;
/// A system string that the library handed out.
using SystemString = std::unique_ptr<WChar, FreeWith<SysFreeString>>;

/// A zero-terminated copy of a standard string, to be given to the library.
class Wide {
 public:
  Wide(std::u16string_view text) : units_(text.begin(), text.end()) { units_.push_back(0); }
  Wide(const char16_t* text) : Wide(std::u16string_view(text)) {}
  Wide(const std::u16string& text) : Wide(std::u16string_view(text)) {}

  operator const WChar*() const { return units_.data(); }

 private:
  std::vector<WChar> units_;
};

/// A copy of one of the library's texts; empty for null.
inline std::u16string ToString(const WChar* text) {
  const WideView view(text);
  return {view.begin(), view.end()};
}

/// The children of a link, in order; a loop may unlink or free the child it was given.
inline chain::Cells<RNode> Children(RNode* parent) {
  return chain::Cells<RNode>(parent->firstChild);
}

/// What kind of link holds a class of item.
template <class Node>
constexpr tagNODETYPE NodeTypeOf() {
  if constexpr (std::is_base_of_v<CColctNode, Node>) return NT_COLCT;
  if constexpr (std::is_base_of_v<CUrlNode, Node>) return NT_URL;
  return NT_FOLDER;
}

/// Makes an item with its link. Throws std::bad_alloc.
template <class Node>
Tree NewTree(const Wide& name) {
  Item<Node> item(Node::New());
  Tree tree(item ? RNode::New2(item.get(), NodeTypeOf<Node>()) : nullptr);
  if (!tree) detail::ThrowNoMemory();
  const unsigned long lostBefore = LostTexts();
  item.release()->SetName(name);
  if (LostTexts() != lostBefore) detail::ThrowNoMemory();
  return tree;
}

/// Makes an item as the last child of `parent` and returns it; the tree owns it. The item's link is
/// its GetRNode(). Throws std::bad_alloc.
template <class Node>
Node& Add(RNode* parent, const Wide& name) {
  RNode* const link = NewTree<Node>(name).release();
  RNTool::InsertAsChild(parent, link);
  return static_cast<Node&>(*link->item);
}

}  // namespace vosmere
