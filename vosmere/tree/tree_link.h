// The links that make items a tree.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// The kind of item that a link holds.
enum tagNODETYPE : LONG {
  NT_FOLDER = 0,  ///< CFolderNode; only these links have children
  NT_URL = 1,     ///< CUrlNode, a web page
  NT_COLCT = 2,   ///< CColctNode, a collection
};

/// A link of a tree: holds one item, its parent, its children and its siblings.
///
/// The children of a link form a chain (base/chain.h): `firstChild`, then `next` until null. The
/// `prev` of the first child is the last child, and a link that is alone is its own `prev`. All
/// links of a chain have the same parent; a chain may also have none. Use RNTool (tree_tool.h) to
/// change links.
///
/// A link owns nothing. Destroying it frees neither its item nor its children, and the item still
/// points at it. The owner of a tree frees it from the bottom up, or with DeleteTree (tree_tool.h).
/// Not thread-safe: a tree belongs to one thread at a time.
struct VOSMERE_API RNode {
  RNode* parent = nullptr;
  RNode* firstChild = nullptr;
  RNode* prev = this;
  RNode* next = nullptr;
  CBaseNode* item;
  tagNODETYPE type;
  ULONG extData = 0;  ///< a word for the user of the tree

  virtual ~RNode();
  RNode(const RNode&) = delete;
  RNode& operator=(const RNode&) = delete;

  /// A link that is in no tree. The item may be null and is not changed. Null when memory runs out.
  static RNode* New(CBaseNode* item, tagNODETYPE type);
  /// The same, and makes the item, unless it is null, point at the new link. When memory runs out,
  /// the item's link becomes null.
  static RNode* New2(CBaseNode* item, tagNODETYPE type);
  /// Frees the link only, without unlinking it. Null is ignored.
  static void Delete(RNode* link);

  void SetExtData(ULONG data) { extData = data; }
  ULONG GetExtData() const { return extData; }

 protected:
  RNode(CBaseNode* heldItem, tagNODETYPE itemType) : item(heldItem), type(itemType) {}
};

}  // namespace vosmere
