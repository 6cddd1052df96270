#include "vosmere/nodes/page_data.h"

namespace vosmere {

CPageData::~CPageData() = default;

}  // namespace vosmere
