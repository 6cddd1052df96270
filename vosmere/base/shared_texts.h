// Constant texts and margins that several parts of the program use.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Constants. Has no state; may be used on any thread.
class VOSMERE_API CVSMGlobal {
 public:
  virtual ~CVSMGlobal();

  // The margins of a header.
  static constexpr int s_iHeadLeftM = 8;
  static constexpr int s_iHeadTopM = 6;
  static constexpr int s_iHeadRightM = 4;

  static const WChar s_szPrefixZ[];     ///< "z--"
  static const WChar s_szUntitled[];    ///< "Untitled-"
  static const WChar s_szAssPostFix[];  ///< "-vsmassets"

  // The constants as non-const pointers, for interfaces that take a WChar*. Must not be written to
  // or freed.
  static WChar* PrefixZ();
  static WChar* Untitled();
  static WChar* AssetsPostfix();
};

}  // namespace vosmere
