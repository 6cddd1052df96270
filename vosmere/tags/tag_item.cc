// The out-of-line destructor keeps the class's virtual table in the library, and only there.
#include "vosmere/tags/tag_item.h"

namespace vosmere {

CTagItem::~CTagItem() = default;

}  // namespace vosmere
