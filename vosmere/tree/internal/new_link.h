// Items on their way out of a document into a tree.
#pragma once

#include <new>

#include "vosmere/tree/base_node.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {

/// Gives an item, fresh from its class's `New`, a link that is the last child of `parent`, or
/// stands alone when that is null. Without memory, a null item included, throws std::bad_alloc and
/// frees the item.
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
