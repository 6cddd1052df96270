// COrderHead and COrderRecord.
#include "vosmere/favorites/order_record.h"

namespace vosmere {

COrderHead::~COrderHead() = default;

COrderRecord::~COrderRecord() = default;

}  // namespace vosmere
