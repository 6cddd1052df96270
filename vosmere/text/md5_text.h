// MD5 digests of wide texts, as hexadecimal text.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// MD5 digests for stable identifiers that are derived from addresses and names. The digest is
/// computed from the UTF-8 form of the null-terminated source; null is treated as the empty text.
/// Upper or lower case is part of the stored format of each caller. Has no state; may be called on
/// any thread.
class VOSMERE_API CEncodingTool {
 public:
  virtual ~CEncodingTool();

  /// Writes 32 upper-case hexadecimal digits and a terminating null; `digest` must have room for 33
  /// code units. Always returns true.
  static bool GetWideCharMD5(const WChar* source, WChar* digest);
  /// The same with lower-case digits.
  static bool GetWideCharLowerMD5(const WChar* source, WChar* digest);
};

}  // namespace vosmere
