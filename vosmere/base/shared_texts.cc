// Written as arrays of numbers because WChar is not char16_t, so a u"" literal does not fit.
#include "vosmere/base/shared_texts.h"

namespace vosmere {

const WChar CVSMGlobal::s_szPrefixZ[] = {'z', '-', '-', 0};
const WChar CVSMGlobal::s_szUntitled[] = {'U', 'n', 't', 'i', 't', 'l', 'e', 'd', '-', 0};
const WChar CVSMGlobal::s_szAssPostFix[] = {'-', 'v', 's', 'm', 'a', 's', 's', 'e', 't', 's', 0};

CVSMGlobal::~CVSMGlobal() = default;

WChar* CVSMGlobal::PrefixZ() {
  return const_cast<WChar*>(s_szPrefixZ);
}

WChar* CVSMGlobal::Untitled() {
  return const_cast<WChar*>(s_szUntitled);
}

WChar* CVSMGlobal::AssetsPostfix() {
  return const_cast<WChar*>(s_szAssPostFix);
}

}  // namespace vosmere
