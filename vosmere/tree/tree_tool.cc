// The operations on trees. Those that visit all links use WalkBelow instead of recursion.
#include "vosmere/tree/tree_tool.h"

#include "vosmere/base/chain.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/uuid.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/sort_node.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {

RNode* RNTool::GetParentNode(RNode* node) {
  return node->parent;
}

RNode* RNTool::GetChildrenNode(RNode* node) {
  return node->firstChild;
}

RNode* RNTool::GetNextNode(RNode* node) {
  return node->next;
}

RNode* RNTool::GerPrevNode(RNode* node) {
  return chain::IsHead(node) ? nullptr : node->prev;
}

RNode* RNTool::GetHeadNode(RNode* node) {
  return node->parent ? node->parent->firstChild : chain::FindHead(node);
}

RNode* RNTool::GetLastNode(RNode*) {
  return nullptr;
}

RNode* RNTool::GetRootNode(RNode* node) {
  while (node->parent) node = node->parent;
  return node;
}

void RNTool::InsertAsChild(RNode* parent, RNode* child) {
  child->parent = parent;
  chain::Append(parent->firstChild, child);
}

void RNTool::InsertAsHeadChild(RNode* parent, RNode* child) {
  child->parent = parent;
  chain::Prepend(parent->firstChild, child);
}

void RNTool::InsertAfter(RNode* reference, RNode* node) {
  node->parent = reference->parent;
  // Only a new last link is stored in the head; without a parent, finding the head takes a walk.
  RNode* const head = reference->next ? nullptr : GetHeadNode(reference);
  chain::InsertAfter(head, reference, node);
}

void RNTool::InsertBefore(RNode* reference, RNode* node) {
  node->parent = reference->parent;
  const bool newHead = chain::InsertBefore(reference, node);
  if (newHead && node->parent) node->parent->firstChild = node;
}

void RNTool::InsertAsLast(RNode* reference, RNode* node) {
  RNode* head = GetHeadNode(reference);
  node->parent = head->parent;
  chain::Append(head, node);
}

void RNTool::InsertAsHead(RNode* reference, RNode* node) {
  RNode* head = GetHeadNode(reference);
  node->parent = head->parent;
  chain::Prepend(head, node);
}

bool RNTool::RemoveOneChild(RNode* parent, RNode* child) {
  if (!chain::Find(parent->firstChild, [child](RNode* link) { return link == child; }))
    return false;
  chain::Unlink(parent->firstChild, child);
  child->parent = nullptr;
  return true;
}

void RNTool::MoveRNodeInDataTree(RNode* newParent, RNode* node, RNode* before) {
  // Moving a link before itself leaves it where it is.
  if (node == before) before = node->next;
  chain::Unlink(node->parent->firstChild, node);
  if (before && newParent->firstChild)
    InsertBefore(before, node);
  else
    InsertAsChild(newParent, node);
}

void RNTool::ReplaceSingleRNode(RNode* oldLink, RNode* newLink) {
  InsertBefore(oldLink, newLink);
  chain::Unlink(oldLink->parent->firstChild, oldLink);
  oldLink->parent = nullptr;
}

RNode* RNTool::SetParent(RNode* member, RNode* newParent) {
  RNode* const oldParent = member->parent;
  RNode* const head = GetHeadNode(member);
  for (RNode* link = head; link; link = link->next) link->parent = newParent;
  if (oldParent) oldParent->firstChild = nullptr;
  if (newParent) newParent->firstChild = head;
  return oldParent;
}

namespace {

/// A copy of the item with a link of its own. Null for a kind that is not copied, and when memory
/// runs out; only the latter sets `*noMemory`.
RNode* CopyLink(const RNode* source, bool* noMemory) {
  CBaseNode* copy = nullptr;
  if (source->type == NT_FOLDER)
    copy = CFolderNode::New(static_cast<CFolderNode*>(source->item));
  else if (source->type == NT_URL)
    copy = CUrlNode::New(static_cast<CUrlNode*>(source->item));
  else
    return nullptr;
  RNode* const link = copy ? RNode::New2(copy, source->type) : nullptr;
  if (!link) {
    CBaseNode::Delete(copy);
    *noMemory = true;
  }
  return link;
}

/// Copies the links below `source`. The first level is collected in a separate chain and appended
/// at the end, so that a destination below the source does not change what is being copied.
void CopyBelow(RNode* destination, RNode* source, bool allLevels) {
  RNode* copies = nullptr;
  RNode* folder = nullptr;  // the copy of the folder that is being filled; null at the first level
  bool noMemory = false;
  WalkBelow(
      source,
      [&](RNode* link) {
        if (noMemory) return false;
        RNode* const copy = CopyLink(link, &noMemory);
        if (!copy) return false;
        copy->parent = folder ? folder : destination;
        chain::Append(folder ? folder->firstChild : copies, copy);
        if (!allLevels || link->type != NT_FOLDER || !link->firstChild) return false;
        folder = copy;
        return true;
      },
      [&](RNode* link) {
        const bool wasFilled = allLevels && link->type == NT_FOLDER && link->firstChild;
        if (wasFilled && folder) folder = folder->parent == destination ? nullptr : folder->parent;
      });
  if (noMemory) {
    for (RNode* const copy : chain::Cells(copies)) DeleteTree(copy);
    return detail::CountLostText();
  }
  chain::AppendChain(destination->firstChild, copies);
}

}  // namespace

void RNTool::AddAllFolderChildren(RNode* destination, RNode* source) {
  CopyBelow(destination, source, true);
}

void RNTool::AddFirstLevelFolderChildren(RNode* destination, RNode* source) {
  CopyBelow(destination, source, false);
}

void RNTool::MarkRNodeGoThrough(RNode* top, int value, bool alsoFolders) {
  if (!top) return;
  WalkBelow(
      // Only folders have children; what hangs below other links is not visited.
      top, [](RNode* link) { return link->type == NT_FOLDER; },
      [=](RNode* link) {
        if (alsoFolders || link->type != NT_FOLDER) link->extData = static_cast<ULONG>(value);
      });
}

RNode* RNTool::FindRNodeByName(RNode* parent, const WChar* name, tagNODETYPE type) {
  const WideView wanted(name);
  return chain::Find(parent->firstChild, [=](RNode* link) {
    return link->type == type && WideView(link->item->GetName()) == wanted;
  });
}

void RNTool::SortFolderChildrenByOrder(RNode* folder) {
  if (!folder) return;
  CSortRNode sorter;
  const auto sortChildren = [&sorter](RNode* parent) {
    if (parent->firstChild) parent->firstChild = sorter.SortByOrder(parent->firstChild, true);
  };
  sortChildren(folder);
  WalkBelow(
      folder,
      [&](RNode* link) {
        if (link->type != NT_FOLDER) return false;
        sortChildren(link);
        return true;
      },
      [](RNode*) {});
}

BSTR RNTool::CreateUUID() {
  WChar text[kUuidTextLength + 1];
  return NewUuidText(text) ? SysAllocString(text) : nullptr;
}

void DeleteTree(RNode* root) {
  if (!root) return;
  const auto deleteLink = [](RNode* link) {
    CBaseNode::Delete(link->item);
    RNode::Delete(link);
  };
  WalkBelow(
      root, [](RNode*) { return true; }, deleteLink);
  deleteLink(root);
}

}  // namespace vosmere
