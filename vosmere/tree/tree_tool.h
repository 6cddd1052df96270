#pragma once

#include "vosmere/base/export.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// Every operation that links, unlinks, moves, copies, walks and searches tree links.
///
/// Nothing here frees anything: a link taken out of a tree stays alive with its item. Links hold
/// items and are correctly linked, and no argument is null unless an operation says what null does.
/// A tree belongs to one thread at a time. No operation's stack use depends on its depth.
class VOSMERE_API RNTool {
 public:
  RNTool() = delete;

  static RNode* GetParentNode(RNode* node);
  static RNode* GetChildrenNode(RNode* node);
  static RNode* GetNextNode(RNode* node);
  /// The previous sibling, null for the head of the chain.
  /// Intended: the spelling; programs know it by this name.
  static RNode* GerPrevNode(RNode* node);
  static RNode* GetHeadNode(RNode* node);
  /// Intended: always null, as callers have known it since the first version; the last link of a
  /// chain is GetHeadNode(node)->prev.
  static RNode* GetLastNode(RNode* node);
  /// The topmost link above `node`, or `node` itself.
  static RNode* GetRootNode(RNode* node);
  /// GetRootNode under its other name.
  static RNode* GetRootRNode(RNode* node) { return GetRootNode(node); }

  // Insertion. The link to insert is detached; its children travel with it.

  /// As the last child.
  static void InsertAsChild(RNode* parent, RNode* child);
  /// As the first child.
  static void InsertAsHeadChild(RNode* parent, RNode* child);
  /// Right after `reference`, with its parent. Works in a chain without a parent, too.
  static void InsertAfter(RNode* reference, RNode* node);
  /// Right before `reference`, with its parent.
  static void InsertBefore(RNode* reference, RNode* node);
  /// At the end of the chain of `reference`.
  static void InsertAsLast(RNode* reference, RNode* node);
  /// In front of the chain of `reference`.
  /// Intended: the parent's `firstChild` goes on naming the old head, since this is for chains
  /// without a parent; InsertAsHeadChild prepends under one.
  static void InsertAsHead(RNode* reference, RNode* node);

  // Restructuring.

  /// Unlinks `child`, which is then on its own. False, with nothing changed, when it is not a child
  /// of `parent`.
  static bool RemoveOneChild(RNode* parent, RNode* child);
  /// Moves `node`, which has a parent, with everything below it under `newParent`: right before
  /// `before`, or as the last child when `before` is null. Moving within one parent works.
  static void MoveRNodeInDataTree(RNode* newParent, RNode* node, RNode* before);
  /// Puts `newLink` in the place of `oldLink`, which has a parent. Both keep their children;
  /// `oldLink` is then on its own.
  static void ReplaceSingleRNode(RNode* oldLink, RNode* newLink);
  /// Moves the whole chain of `member` under `newParent`, whose former children are dropped, not
  /// freed, and keep their `parent` until they are linked again; null makes the chain top-level.
  /// Returns the old parent, which is then childless, or null. Under its own parent a chain stays
  /// as it is.
  static RNode* SetParent(RNode* member, RNode* newParent);

  // Copying, marking, searching, ordering.

  /// Copies everything below `source` to the end of the children of `destination`: folders and web
  /// pages; other kinds are left out. The copies keep names, statistics, identities and the other
  /// fields. `destination` may lie below `source`; what is copied is the state before. When memory
  /// runs out nothing is copied, and LostTexts counts it.
  static void AddAllFolderChildren(RNode* destination, RNode* source);
  /// The same for the direct children only: copied folders are empty.
  static void AddFirstLevelFolderChildren(RNode* destination, RNode* source);
  /// Sets `extData` on every link below `top` that is not a folder, and on folders as well when
  /// `alsoFolders` is true. Null is ignored; `top` itself is never marked.
  static void MarkRNodeGoThrough(RNode* top, int value, bool alsoFolders);
  /// The first direct child of that type whose name is exactly `name`; null for none. A null name
  /// counts as the empty one.
  static RNode* FindRNodeByName(RNode* parent, const WChar* name, tagNODETYPE type);
  /// Sorts the children of `folder` and of every folder below it. Null is ignored.
  /// Intended: the stored order is not looked at; the result is that of CSortRNode::SortByOrder,
  /// names from Z to A without regard to ASCII case.
  static void SortFolderChildrenByOrder(RNode* folder);

  /// A new UUID as a system string that the caller frees with SysFreeString; null without one.
  static BSTR CreateUUID();
};

/// Frees `root` and everything below it, items and links. Null is ignored. A collection's local
/// tree (CColctNode::GetLocRNodeRoot) has an owner of its own and is not freed.
VOSMERE_API void DeleteTree(RNode* root);

}  // namespace vosmere
