// The out-of-line destructor keeps the class's virtual table in the library, and only there.
#include "vosmere/tabs/translation_item.h"

namespace vosmere {

CTranslationItem::~CTranslationItem() = default;

}  // namespace vosmere
