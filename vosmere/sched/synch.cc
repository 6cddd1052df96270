#include "vosmere/sched/synch.h"

namespace vosmere {

CKQSynch::~CKQSynch() = default;

}  // namespace vosmere
