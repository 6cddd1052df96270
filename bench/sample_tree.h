// A collection tree and a collection as users have them, the same on every run.
#pragma once

#include <cstddef>

#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere::bench {

/// A tree whose document has about `bytes` bytes: folders to a depth of six, some texts with
/// accents or in Chinese, descriptions on a third of the items, and every extension element. No
/// text needs escaping. The caller owns the tree and frees it with DeleteTree.
RNode* NewSampleTree(std::size_t bytes);

/// A collection whose RSS document has about `bytes` bytes: ordered and synchronised, its items in
/// folders to a depth of six, with every element that the document can have. The caller owns it and
/// frees it with DeleteWithLocalTree.
CColctNode* NewSampleColct(std::size_t bytes);

}  // namespace vosmere::bench
