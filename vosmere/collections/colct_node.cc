// Collections and the freeing of their local trees.
#include "vosmere/collections/colct_node.h"

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {

CColctNode::CColctNode() : colctNetData_(new CColctNetData) {}

CColctNode::CColctNode(const CColctNode* source)
    : CUrlNode(source),
      colctType_(source->colctType_),
      locRNodeRoot_(source->locRNodeRoot_),
      hasNewData_(source->hasNewData_),
      colctNetData_(new CColctNetData(source->GetColctNetData())),
      loadingState_(source->loadingState_) {}

CColctNode::~CColctNode() = default;

CColctNode* CColctNode::New() {
  return NullIfNoMemory([] { return new CColctNode; });
}

CColctNode* CColctNode::New(CColctNode* source) {
  return NullIfNoMemory([source] { return new CColctNode(source); });
}

void CColctNode::SetLoadingState(int state) {
  if (state >= -1 && state <= 2) loadingState_ = state;
}

LONG CColctNode::GetLastModified() const {
  LONG modified = 0;
  GetNodeStat()->GetStatTime(nullptr, &modified, nullptr);
  return modified;
}

void CColctNode::SetPropertiesFromColctFileNode(CColctNode* fileNode) {
  if (fileNode->GetName()) SetName(fileNode->GetName());
  SetDescription(fileNode->GetDescription());
  if (WideLength(fileNode->GetUUID()) > 1) SetUUID(fileNode->GetUUID());
  int checkedIn = 0;
  fileNode->HasCheckedIn(&checkedIn);
  SetCheckedIn(checkedIn);
  SetBaseBuild(fileNode->GetBaseBuild());
}

void DeleteWithLocalTree(CColctNode* colct) {
  if (colct) DeleteTree(colct->GetLocRNodeRoot());
  CBaseNode::Delete(colct);
}

}  // namespace vosmere
