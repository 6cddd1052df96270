#include "vosmere/nodes/colct_net_data.h"

namespace vosmere {

CColctNetData::CColctNetData(const CColctNetData* source) : owner_(source->GetOwner()) {
  *this = *source;
}

CColctNetData::~CColctNetData() = default;

CColctNetData& CColctNetData::operator=(const CColctNetData& source) {
  if (this == &source) return *this;
  if (source.GetOwner()) SetOwner(source.GetOwner());
  ordered_ = source.ordered_;
  sharingDomain_ = source.sharingDomain_;
  foreignColct_ = source.foreignColct_;
  role_ = source.role_;
  synced_ = source.synced_;
  pollingInterval_ = source.pollingInterval_;
  issuedTimeEventID_ = source.issuedTimeEventID_;
  colctExpandState_ = source.colctExpandState_;
  return *this;
}

}  // namespace vosmere
