// Chains of collections; cells are linked by base/chain.h.
#include "vosmere/collections/colct_item.h"

#include <new>

#include "vosmere/base/chain.h"
#include "vosmere/base/list.h"
#include "vosmere/collections/colct_node.h"

namespace vosmere {

RColctItem::~RColctItem() = default;

RColctItem* RColctItem::New(CColctNode* colct, bool mark) {
  return new (std::nothrow) RColctItem(colct, mark);
}

void RColctItem::Delete(RColctItem* cell) {
  delete cell;
}

void RColctItem::DeleteList(RColctItem* head) {
  list::DeleteItems(head);
}

void RColctItem::DeleteListShell(RColctItem* head) {
  for (RColctItem* cell : chain::Cells(head)) Delete(cell);
}

}  // namespace vosmere
