// The base of all items, and CBaseTool::AssignUUID, which needs it.
#include "vosmere/tree/base_node.h"

#include "vosmere/platform/internal/uuid.h"
#include "vosmere/text/toolbox.h"

namespace vosmere {

CBaseNode::CBaseNode() : name_(HeapTextStorage::Empty()), description_(HeapTextStorage::Empty()) {}

CBaseNode::CBaseNode(const CBaseNode* source)
    : name_(source->GetName()),
      description_(source->GetDescription()),
      stat_(source->stat_),
      version_(source->version_),
      order_(source->order_),
      checkedIn_(source->checkedIn_),
      baseBuild_(source->baseBuild_),
      deleted_(source->deleted_),
      nodeData_(source->nodeData_) {
  SetUUID(source->uuid_);
}

CBaseNode::~CBaseNode() = default;

void CBaseNode::Delete(CBaseNode* node) {
  delete node;
}

void CBaseNode::SetUUID(const WChar* uuid) {
  // memmove, because the text may be the item's own.
  const WideView text = WideView(uuid).First(kMaxUuidLength);
  if (!text.empty()) std::memmove(uuid_, text.data, text.size * sizeof(WChar));
  uuid_[text.size] = 0;
  if (uuid && uuid[text.size]) detail::CountCutText();
}

bool CBaseNode::HasCheckedIn(int* state) const {
  if (state) *state = checkedIn_;
  return checkedIn_ == kCheckedIn;
}

// Here and not in text/toolbox.cc, because that room must not include items.
bool CBaseTool::AssignUUID(CBaseNode* node) {
  WChar uuid[kUuidTextLength + 1];
  if (!GetUUID(uuid, kUuidTextLength + 1)) return false;
  node->SetUUID(uuid);
  return true;
}

}  // namespace vosmere
