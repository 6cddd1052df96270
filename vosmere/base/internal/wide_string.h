// Conversions between WChar texts and std::u16string, and helpers for such strings.
#pragma once

#include <string>

#include "vosmere/base/ascii.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// A copy of a null-terminated text; empty for null.
inline std::u16string ToU16(const WChar* text) {
  const WideView view(text);
  return {view.begin(), view.end()};
}

/// The code units of a string or literal as the type that the library's interface takes.
inline const WChar* Units(const std::u16string& text) {
  return reinterpret_cast<const WChar*>(text.c_str());
}
inline const WChar* Units(const char16_t* text) {
  return reinterpret_cast<const WChar*>(text);
}

/// A copy in which A to Z are lower case: equal for texts that differ only in ASCII case.
inline std::u16string Folded(std::u16string text) {
  for (char16_t& unit : text) unit = static_cast<char16_t>(ascii::Fold(unit));
  return text;
}

/// `folder` and `name` with a separator between them, unless the folder ends in one. The separator
/// is a backslash; on Linux the file functions accept both kinds.
inline std::u16string JoinPath(std::u16string folder, const std::u16string& name) {
  if (!folder.ends_with(u'\\') && !folder.ends_with(u'/')) folder += u'\\';
  return folder += name;
}

}  // namespace vosmere
