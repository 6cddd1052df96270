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

  // Each returns the one text itself, which lives as long as the program.

  /// "z--"
  static const WChar* PrefixZ();
  /// "Untitled-"
  static const WChar* Untitled();
  /// "-vsmassets"
  static const WChar* AssetsPostfix();
};

}  // namespace vosmere
