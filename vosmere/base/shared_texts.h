#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Texts and margins that the whole program shares. Stateless; any thread.
class VOSMERE_API CVSMGlobal {
 public:
  virtual ~CVSMGlobal();

  // Margins of a header.
  static constexpr int s_iHeadLeftM = 8;
  static constexpr int s_iHeadTopM = 6;
  static constexpr int s_iHeadRightM = 4;

  static const WChar s_szPrefixZ[];     ///< "z--"
  static const WChar s_szUntitled[];    ///< "Untitled-"
  static const WChar s_szAssPostFix[];  ///< "-vsmassets"

  // The texts themselves: they are constants, and never to be written to.
  static WChar* PrefixZ();
  static WChar* Untitled();
  static WChar* AssetsPostfix();
};

}  // namespace vosmere
