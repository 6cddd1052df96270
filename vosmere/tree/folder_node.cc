// Folders add nothing to the base but a type of their own.
#include "vosmere/tree/folder_node.h"

#include "vosmere/base/internal/no_memory.h"

namespace vosmere {

CFolderNode* CFolderNode::New() {
  return NullIfNoMemory([] { return new CFolderNode; });
}

CFolderNode* CFolderNode::New(CFolderNode* source) {
  return NullIfNoMemory([source] { return new CFolderNode(source); });
}

CFolderNode::~CFolderNode() = default;

}  // namespace vosmere
