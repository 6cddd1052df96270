#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// MD5 digests of wide texts as hexadecimal text, for stable identifiers derived from addresses and
/// names. Digested are the UTF-8 bytes of the zero-terminated source, null counting as empty. The
/// letter case of the digits is part of each caller's stored format. Stateless; any thread.
class VOSMERE_API CEncodingTool {
 public:
  virtual ~CEncodingTool();

  /// 32 upper-case digits and a zero unit; `digest` holds 33 units. Always true.
  static bool GetWideCharMD5(const WChar* source, WChar* digest);
  /// The same in lower case.
  static bool GetWideCharLowerMD5(const WChar* source, WChar* digest);
};

}  // namespace vosmere
