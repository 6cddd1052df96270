#include "vosmere/base/lock.h"

namespace vosmere {

CKQSynch::~CKQSynch() = default;

}  // namespace vosmere
