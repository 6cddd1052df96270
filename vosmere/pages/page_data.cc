#include "vosmere/pages/page_data.h"

namespace vosmere {

CPageData::~CPageData() = default;

}  // namespace vosmere
