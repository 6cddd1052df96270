#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Conversions between wide text and 8-bit text in fresh memory. Stateless; any thread.
///
/// 8-bit results are zero-terminated, one byte longer than the count that goes with them, and freed
/// with DeleteBuffer. In UTF-8 an unpaired surrogate becomes U+FFFD, and ill-formed UTF-8 gives one
/// U+FFFD for each maximal ill-formed part. A null source converts like an empty one unless said
/// otherwise.
class VOSMERE_API CUnicodeTool {
 public:
  virtual ~CUnicodeTool();

  /// Converts a system string; zero units within it are converted, too. False only without memory,
  /// both results then untouched.
  static bool BSTRGetUTF8(const WChar* source, char** text, int* length);

  /// Converts a zero-terminated text.
  /// Intended: without memory it is false and `*text` is null, where the others leave it alone;
  /// callers free the result without asking.
  static bool TCHARGetUTF8(const WChar* source, char** text, int* length);

  /// Converts a zero-terminated text to the platform's 8-bit code page: on Windows the ANSI code
  /// page; elsewhere that of the locale which the program has set with setlocale, and UTF-8 in the
  /// "C" locale, in which every program starts and which has ASCII alone. What the code page cannot
  /// represent becomes the platform's replacement. False without memory or for a locale without a
  /// converter, both results then untouched.
  static bool TCHARGetASCII(const WChar* source, char** text, int* length);

  /// Converts `length` bytes of UTF-8, zero bytes included; a length of 0 means that the source is
  /// zero-terminated. The caller frees the result with SysFreeString. False for a null or empty
  /// source, a negative length, and without memory, the result then untouched.
  static bool UTF8GetBSTR(BSTR* result, const char* source, int length);

  /// Frees what a conversion handed out. Null is ignored.
  static void DeleteBuffer(char* text);
};

}  // namespace vosmere
