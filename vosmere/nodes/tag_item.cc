#include "vosmere/nodes/tag_item.h"

namespace vosmere {

CTagItem::~CTagItem() = default;

}  // namespace vosmere
