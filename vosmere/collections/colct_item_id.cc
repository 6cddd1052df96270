// References to items of collections, and how they are looked up.
#include "vosmere/collections/colct_item_id.h"

#include "vosmere/base/chain.h"
#include "vosmere/base/list.h"
#include "vosmere/collections/colct_item.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {
namespace {

bool HasIdentity(CBaseNode* item, const WChar* id) {
  return id && SameText(item->GetUUID(), id);
}

}  // namespace

CColctItemID::~CColctItemID() = default;

CColctItemID* CColctItemID::New() {
  return new (std::nothrow) CColctItemID;
}

void CColctItemID::Delete(CColctItemID* id) {
  delete id;
}

bool CColctItemID::FindColctNode(RColctItem* list, CColctItemID* id) {
  if (!list) return false;
  const RColctItem* const cell = chain::Find(list, [id](RColctItem* candidate) {
    return id->refColctNode_ ? candidate->item == id->refColctNode_
                             : HasIdentity(candidate->item, id->GetColctID());
  });
  id->refColctNode_ = cell ? cell->item : nullptr;
  if (!cell) id->refUrlNode_ = nullptr;
  return cell != nullptr;
}

bool CColctItemID::FindColctUrlNode(RColctItem* list, CColctItemID* id) {
  if (!FindColctNode(list, id)) return false;
  RNode* const root = id->refColctNode_->GetLocRNodeRoot();
  const RNode* const link = chain::Find(root ? root->firstChild : nullptr, [id](RNode* candidate) {
    if (candidate->type != NT_URL) return false;
    return id->refUrlNode_ ? candidate->item == id->refUrlNode_
                           : HasIdentity(candidate->item, id->GetItemID());
  });
  id->refUrlNode_ = link ? static_cast<CUrlNode*>(link->item) : nullptr;
  return link != nullptr;
}

RColctItemID::~RColctItemID() = default;

RColctItemID* RColctItemID::New(CColctItemID* id) {
  return new (std::nothrow) RColctItemID(id);
}

void RColctItemID::DeleteList(RColctItemID* head) {
  list::DeleteItems(head);
}

}  // namespace vosmere
