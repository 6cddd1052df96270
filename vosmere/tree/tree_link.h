#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// What kind of item a link holds.
enum tagNODETYPE : LONG {
  NT_FOLDER = 0,  ///< CFolderNode; the only kind that has children
  NT_URL = 1,     ///< CUrlNode, a web page
  NT_COLCT = 2,   ///< CColctNode, a collection
};

/// A tree link: holds one item and its place among parent, children and siblings.
///
/// The children of a link form a chain (base/chain.h): `firstChild`, then `next` until null; the
/// head's `prev` is the last child, a lone link's `prev` is itself. All links of a chain have the
/// same parent; a chain may also stand without one. RNTool (tree_tool.h) does the linking.
///
/// A link owns nothing: destroying it frees neither its item nor its children, and the item goes on
/// pointing at it. Whoever builds a tree frees it bottom-up, or with DeleteTree (tree_tool.h).
struct VOSMERE_API RNode {
  RNode* parent = nullptr;
  RNode* firstChild = nullptr;
  RNode* prev = this;
  RNode* next = nullptr;
  CBaseNode* item;
  tagNODETYPE type;
  ULONG extData = 0;  ///< one word for the user of the tree

  virtual ~RNode();
  RNode(const RNode&) = delete;
  RNode& operator=(const RNode&) = delete;

  /// A link on its own. Null when memory runs out. The item, which may be null, is not touched.
  static RNode* New(CBaseNode* item, tagNODETYPE type);
  /// The same, and makes the item, if there is one, point back at the link (at null when memory
  /// runs out).
  static RNode* New2(CBaseNode* item, tagNODETYPE type);
  /// Destroys the link alone. Null is ignored.
  static void Delete(RNode* link);

  void SetExtData(ULONG data) { extData = data; }
  ULONG GetExtData() const { return extData; }

 protected:
  RNode(CBaseNode* heldItem, tagNODETYPE itemType) : item(heldItem), type(itemType) {}
};

}  // namespace vosmere
