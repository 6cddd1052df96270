// The out-of-line destructor keeps the class's virtual table in the library, and only there.
#include "vosmere/pages/page_data.h"

namespace vosmere {

CPageData::~CPageData() = default;

}  // namespace vosmere
