// Creating and freeing links.
#include "vosmere/tree/tree_link.h"

#include <new>

#include "vosmere/tree/base_node.h"

namespace vosmere {

RNode::~RNode() = default;

RNode* RNode::New(CBaseNode* item, tagNODETYPE type) {
  return new (std::nothrow) RNode(item, type);
}

RNode* RNode::New2(CBaseNode* item, tagNODETYPE type) {
  RNode* const link = New(item, type);
  if (item) item->SetRNode(link);
  return link;
}

void RNode::Delete(RNode* link) {
  delete link;
}

}  // namespace vosmere
