// Filling a DocumentError.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "vosmere/base/document_error.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/disk.h"

namespace vosmere {

/// Returns false, so that the caller can return it. `error` may be null. A reason that is too long
/// is cut off.
inline bool FailWith(DocumentError* error, DocumentFault fault, const std::string& reason,
                     ULONG systemError = 0) {
  if (!error) return false;
  *error = {};
  error->fault = fault;
  error->systemError = systemError;
  const std::string whole = systemError ? reason + ": " + SystemMessage(systemError) : reason;
  std::size_t length = std::min(whole.size(), sizeof error->reason - 1);
  while (length < whole.size() && length > 0 && (whole[length] & 0xC0) == 0x80) --length;
  std::memcpy(error->reason, whole.data(), length);
  return false;
}

/// For use in a reason: converts at most the first 200 units.
inline std::string Utf8(const PathText& text) {
  const int units = static_cast<int>(std::min<std::size_t>(text.size(), 200));
  std::string utf8(static_cast<std::size_t>(units) * 3 + 1, '\0');
  const int length =
      WideToBytes(kCodePageUtf8, text.data(), units, utf8.data(), static_cast<int>(utf8.size()));
  utf8.resize(static_cast<std::size_t>(std::max(length, 0)));
  return utf8;
}

/// A text of ASCII.
inline PathText PathOf(const std::string& ascii) {
  return PathText(ascii.begin(), ascii.end());
}

}  // namespace vosmere
