// Conversions between UTF-16 and 8-bit text.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Converts between wide text and 8-bit text in newly allocated memory. Has no state; may be called
/// on any thread.
///
/// 8-bit results are null-terminated, the stored length does not count the terminator, and the
/// caller frees them with DeleteBuffer. In UTF-8 an unpaired surrogate becomes U+FFFD; in the other
/// direction each maximal ill-formed part becomes one U+FFFD. A null source is treated as the empty
/// text unless said otherwise.
class VOSMERE_API CUnicodeTool {
 public:
  virtual ~CUnicodeTool();

  /// Converts a system string to UTF-8, including nulls within it. Returns false when memory runs
  /// out; both results are unchanged then.
  static bool BSTRGetUTF8(const WChar* source, char** text, int* length);

  /// Converts a null-terminated text to UTF-8. Returns false when memory runs out.
  /// Intended: `*text` is set to null then, unlike in the other functions: callers free it without
  /// looking at the result.
  static bool TCHARGetUTF8(const WChar* source, char** text, int* length);

  /// Converts a null-terminated text to the platform's 8-bit code page: on Windows the ANSI code
  /// page, on Linux the one of the locale that the program has set with setlocale. In the "C"
  /// locale, in which every program starts and which has only ASCII, the result is UTF-8.
  /// Characters that the code page does not have become the platform's replacement character.
  /// Returns false, with both results unchanged, when memory runs out and when there is no
  /// converter for the locale.
  static bool TCHARGetASCII(const WChar* source, char** text, int* length);

  /// Converts `length` bytes of UTF-8, including null bytes; with a length of 0 the source is
  /// null-terminated. The caller frees `*result` with SysFreeString. Returns false, with `*result`
  /// unchanged, for a null or empty source, for a negative length, and when memory runs out.
  static bool UTF8GetBSTR(BSTR* result, const char* source, int length);

  /// Frees an 8-bit result. Null is ignored.
  static void DeleteBuffer(char* text);
};

}  // namespace vosmere
