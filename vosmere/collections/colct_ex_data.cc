// Extra data of collections; cells are linked by base/chain.h.
#include "vosmere/collections/colct_ex_data.h"

#include "vosmere/base/list.h"

namespace vosmere {

CColctExData::~CColctExData() = default;

CColctExData* CColctExData::New() {
  return new (std::nothrow) CColctExData;
}

void CColctExData::Delete(CColctExData* data) {
  delete data;
}

RColctExData::~RColctExData() = default;

RColctExData* RColctExData::New(CColctExData* data) {
  return new (std::nothrow) RColctExData(data);
}

void RColctExData::DeleteList(RColctExData* head) {
  list::DeleteItems(head);
}

}  // namespace vosmere
