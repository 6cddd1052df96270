// Trees in tests, written the way they look: `b(c d)` is a folder with two web pages, `e()` an
// empty folder, `@f` a collection; names stand between blanks.
//
//   TreePtr tree = Tree("root(a b(c d) @f)");
//   RNTool::RemoveOneChild(tree, tree["a"]);
//   EXPECT_EQ(Shape(tree), "root(b(c d) @f)");
//
// Shape also checks every chain, parent and back-link below, and says what is wrong instead.
#pragma once

#include <algorithm>
#include <functional>
#include <string>

#include "tests/support/row.h"
#include "tests/support/wide.h"
#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/cpp/own.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_tool.h"
#include "vosmere/tree/url_node.h"

namespace vosmere::test {

template <class Node>
Item<Node> New() {
  return Item<Node>(Node::New());
}

inline std::string NameOf(const RNode* link) {
  return Utf8(link->item->GetName());
}

/// The first link with that name in the tree of `top`, including `top`; null if there is none.
inline RNode* FindLink(RNode* top, const std::string& name) {
  if (test::NameOf(top) == name) return top;
  for (RNode* child = top->firstChild; child; child = child->next)
    if (RNode* const found = FindLink(child, name)) return found;
  return nullptr;
}

/// Owns a link with everything below it; can be used like an `RNode*`.
class TreePtr {
 public:
  explicit TreePtr(RNode* root) : root_(root) {}

  operator RNode*() const { return root_.get(); }
  RNode* operator->() const { return root_.get(); }
  RNode* operator[](const char* name) const { return FindLink(root_.get(), name); }
  RNode* release() { return root_.release(); }

 private:
  vosmere::Tree root_;
};

inline RNode* NewLink(tagNODETYPE type, const std::string& name) {
  CBaseNode* const item = type == NT_FOLDER ? CFolderNode::New()
                          : type == NT_URL  ? static_cast<CBaseNode*>(CUrlNode::New())
                                            : CColctNode::New();
  item->SetName(W(name));
  return RNode::New2(item, type);
}

inline TreePtr Page(const std::string& name) {
  return TreePtr(NewLink(NT_URL, name));
}
inline TreePtr Folder(const std::string& name) {
  return TreePtr(NewLink(NT_FOLDER, name));
}

/// Builds without the tree operations under test.
inline TreePtr Tree(const std::string& text) {
  RNode* root = nullptr;
  RNode* parent = nullptr;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == ' ' || text[at] == ')') {
      if (text[at++] == ')') parent = parent->parent;
      continue;
    }
    const std::size_t end = std::min(text.find_first_of(" ()", at), text.size());
    const bool folder = end < text.size() && text[end] == '(';
    const bool colct = text[at] == '@';
    RNode* const link = NewLink(folder  ? NT_FOLDER
                                : colct ? NT_COLCT
                                        : NT_URL,
                                text.substr(at + colct, end - at - colct));
    link->parent = parent;
    if (!root) root = link;
    if (parent) chain::Append(parent->firstChild, link);
    if (folder) parent = link;
    at = end + folder;
  }
  return TreePtr(root);
}

/// That many folders, each in the one before, and two pages in the last.
inline TreePtr Deep(int levels) {
  std::string text = "root(";
  for (int i = 0; i < levels; ++i) text += "f(";
  return Tree(text + "a b");
}

using Label = std::function<std::string(const RNode*)>;

inline std::string ChainShape(const RNode* head, const Label& label = NameOf);

/// The tree in the notation of Tree(); `label` puts something else in place of the names.
inline std::string Shape(const RNode* link, const Label& label = NameOf) {
  std::string shape = link->type == NT_COLCT ? "@" : "";
  shape += label(link);
  if (link->type == NT_FOLDER || link->firstChild)
    shape += "(" + ChainShape(link->firstChild, label) + ")";
  for (const RNode* child = link->firstChild; child; child = child->next)
    if (child->parent != link) shape += " BROKEN: wrong parent of " + label(child);
  if (link->item->GetRNode() != link) shape += " BROKEN: wrong back-link";
  return shape;
}

/// The siblings from `head` on, for chains that need not have a parent.
inline std::string ChainShape(const RNode* head, const Label& label) {
  return Row(head, [&](const RNode* link) {
    return Shape(link, label) + (link->parent == head->parent ? "" : " BROKEN: parents differ");
  });
}

/// Whether the link is alone, like one that was taken out of its tree.
inline bool IsDetached(const RNode* link) {
  return !link->parent && !link->next && link->prev == link;
}

}  // namespace vosmere::test
