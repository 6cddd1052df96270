// The network settings of a collection.
#include "vosmere/collections/colct_net_data.h"

namespace vosmere {

CColctNetData::CColctNetData(const CColctNetData* source) : owner_(source->GetOwner()) {
  CopyAllButOwner(*source);
}

CColctNetData::~CColctNetData() = default;

CColctNetData& CColctNetData::operator=(const CColctNetData& source) {
  if (source.GetOwner()) SetOwner(source.GetOwner());
  CopyAllButOwner(source);
  return *this;
}

void CColctNetData::CopyAllButOwner(const CColctNetData& source) {
  ordered_ = source.ordered_;
  sharingDomain_ = source.sharingDomain_;
  foreignColct_ = source.foreignColct_;
  role_ = source.role_;
  synced_ = source.synced_;
  pollingInterval_ = source.pollingInterval_;
  issuedTimeEventID_ = source.issuedTimeEventID_;
  colctExpandState_ = source.colctExpandState_;
}

}  // namespace vosmere
