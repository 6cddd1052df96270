#include "vosmere/tabs/translation_item.h"

namespace vosmere {

CTranslationItem::~CTranslationItem() = default;

}  // namespace vosmere
