// The out-of-line destructor keeps the class's virtual table in the library, and only there.
#include "vosmere/base/lock.h"

namespace vosmere {

CKQSynch::~CKQSynch() = default;

}  // namespace vosmere
