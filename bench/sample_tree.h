// A collection tree as a user may have it, the same on every run.
#pragma once

#include <cstddef>

#include "vosmere/nodes/tree_link.h"

namespace vosmere::bench {

/// A tree whose document has about `bytes` bytes: folders to a depth of six, some texts with
/// accents or in Chinese, descriptions on a third of the items, and every extension element. No
/// text needs escaping. The caller frees it with DeleteTree.
RNode* NewSampleTree(std::size_t bytes);

}  // namespace vosmere::bench
