// The operations on trees of links, and DeleteTree.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// Inserts, removes, moves, copies, visits, finds and sorts the links of a tree.
///
/// Nothing here frees anything: a link that is removed from its tree stays alive with its item. All
/// links must hold items and be linked correctly, and arguments must not be null unless the comment
/// says so. Not thread-safe: a tree belongs to one thread at a time. No operation is recursive, so
/// trees of any depth are safe on a small stack.
class VOSMERE_API RNTool {
 public:
  RNTool() = delete;

  // The parent, the first child and the next sibling; null when there is none.
  static RNode* GetParentNode(RNode* node);
  static RNode* GetChildrenNode(RNode* node);
  static RNode* GetNextNode(RNode* node);
  /// The previous sibling; null for the first link of its chain.
  /// Intended: the spelling. Programs call it by this name.
  static RNode* GerPrevNode(RNode* node);
  /// The first link of the chain: in constant time under a parent, otherwise by walking back.
  static RNode* GetHeadNode(RNode* node);
  /// Intended: always null, as it has always been. Use GetHeadNode(node)->prev to get the last
  /// link.
  static RNode* GetLastNode(RNode* node);
  /// The topmost link above `node`; `node` itself when it has no parent.
  static RNode* GetRootNode(RNode* node);
  /// Another name of GetRootNode.
  static RNode* GetRootRNode(RNode* node) { return GetRootNode(node); }

  // Insertion. The link to be inserted must be in no tree; its children stay below it.

  /// Inserts as the last child.
  static void InsertAsChild(RNode* parent, RNode* child);
  /// Inserts as the first child.
  static void InsertAsHeadChild(RNode* parent, RNode* child);
  /// Inserts directly after `reference`, under the same parent. Also works in a chain without a
  /// parent.
  static void InsertAfter(RNode* reference, RNode* node);
  /// Inserts directly before `reference`, under the same parent.
  static void InsertBefore(RNode* reference, RNode* node);
  /// Inserts at the end of the chain that contains `reference`.
  static void InsertAsLast(RNode* reference, RNode* node);
  /// Inserts at the start of the chain that contains `reference`.
  /// Intended: a parent's `firstChild` still points at the old head, because this is for chains
  /// without a parent. Use InsertAsHeadChild under a parent.
  static void InsertAsHead(RNode* reference, RNode* node);

  // Restructuring.

  /// Removes `child` from its parent; it is alone then. Returns false, with nothing changed, when
  /// it is not a child of `parent`.
  static bool RemoveOneChild(RNode* parent, RNode* child);
  /// Moves `node`, which must have a parent, with everything below it to `newParent`: directly
  /// before the child `before`, or as the last child when `before` is null. The old and new parent
  /// may be the same. `newParent` must not be `node` or lie below it.
  static void MoveRNodeInDataTree(RNode* newParent, RNode* node, RNode* before);
  /// Puts `newLink` in the place of `oldLink`, which must have a parent and is alone afterwards.
  /// Each keeps its own children.
  static void ReplaceSingleRNode(RNode* oldLink, RNode* newLink);
  /// Moves the whole chain that contains `member` under `newParent`; null makes it a chain without
  /// a parent. The former children of `newParent` are dropped: they are not freed, and they keep
  /// their `parent` until they are linked again. Returns the old parent, which has no children
  /// then, or null. A chain that is under `newParent` already does not change.
  static RNode* SetParent(RNode* member, RNode* newParent);

  // Copying, marking, searching, ordering.

  /// Appends copies of everything below `source` to the children of `destination`. Only folders and
  /// web pages are copied. The copies keep all fields, the identity included. `destination` may lie
  /// below `source`, and is then copied as it was before. When memory runs out, nothing is copied,
  /// and LostTexts counts it.
  static void AddAllFolderChildren(RNode* destination, RNode* source);
  /// The same for the direct children only: folders are copied without their contents.
  static void AddFirstLevelFolderChildren(RNode* destination, RNode* source);
  /// Sets `extData` of every link below `top` to `value`; of folders only if `alsoFolders` is true.
  /// `top` itself is not changed. Null is ignored.
  static void MarkRNodeGoThrough(RNode* top, int value, bool alsoFolders);
  /// The first direct child with this type and exactly this name; null when there is none. A null
  /// name is treated as the empty text.
  static RNode* FindRNodeByName(RNode* parent, const WChar* name, tagNODETYPE type);
  /// Sorts the children of `folder` and of all folders below it. Null is ignored.
  /// Intended: the stored order is ignored. The result is that of CSortRNode::SortByOrder: names
  /// from Z to A, case-insensitive (ASCII).
  static void SortFolderChildrenByOrder(RNode* folder);

  /// A new UUID as a system string that the caller frees with SysFreeString. Null when none can be
  /// generated, and when memory runs out.
  static BSTR CreateUUID();
};

/// Frees `root` and everything below it, links and items. Null is ignored. The local tree of a
/// collection (CColctNode::GetLocRNodeRoot) has another owner and is not freed.
VOSMERE_API void DeleteTree(RNode* root);

}  // namespace vosmere
