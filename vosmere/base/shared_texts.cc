#include "vosmere/base/shared_texts.h"

#include "vosmere/base/internal/wide_literal.h"

namespace vosmere {
namespace {

constexpr WideLiteral s_szPrefixZ(u"z--");
constexpr WideLiteral s_szUntitled(u"Untitled-");
constexpr WideLiteral s_szAssPostFix(u"-vsmassets");

}  // namespace

CVSMGlobal::~CVSMGlobal() = default;

const WChar* CVSMGlobal::PrefixZ() {
  return s_szPrefixZ;
}

const WChar* CVSMGlobal::Untitled() {
  return s_szUntitled;
}

const WChar* CVSMGlobal::AssetsPostfix() {
  return s_szAssPostFix;
}

}  // namespace vosmere
