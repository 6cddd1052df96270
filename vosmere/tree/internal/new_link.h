// Puts items that a reader creates into a tree.
#pragma once

#include <new>

#include "vosmere/tree/base_node.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {

/// Makes a link for an item that its class's `New` has just returned: the last child of `parent`,
/// or a link without a parent if that is null. If memory ran out for the item (null) or runs out
/// for the link, frees the item and throws std::bad_alloc.
inline RNode* NewLink(CBaseNode* item, tagNODETYPE type, RNode* parent) {
  RNode* const link = item ? RNode::New2(item, type) : nullptr;
  if (!link) {
    CBaseNode::Delete(item);
    throw std::bad_alloc();
  }
  if (parent) RNTool::InsertAsChild(parent, link);
  return link;
}

}  // namespace vosmere
