#include "vosmere/tags/tag_item.h"

namespace vosmere {

CTagItem::~CTagItem() = default;

}  // namespace vosmere
