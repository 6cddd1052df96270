// Wide text as standard strings, within the library.
#pragma once

#include <string>

#include "vosmere/base/wide_view.h"

namespace vosmere {

/// A copy; empty for null.
inline std::u16string ToU16(const WChar* text) {
  const WideView view(text);
  return {view.begin(), view.end()};
}

inline const WChar* Units(const std::u16string& text) {
  return reinterpret_cast<const WChar*>(text.c_str());
}
inline const WChar* Units(const char16_t* text) {
  return reinterpret_cast<const WChar*>(text);
}

/// With A-Z folded to a-z: the same for texts that differ in ASCII case alone.
inline std::u16string Folded(std::u16string text) {
  for (char16_t& unit : text) unit = static_cast<char16_t>(FoldAscii(unit));
  return text;
}

/// A path below a folder; a separator is put between unless the folder ends in one.
inline std::u16string JoinPath(std::u16string folder, const std::u16string& name) {
  if (!folder.ends_with(u'\\') && !folder.ends_with(u'/')) folder += u'\\';
  return folder += name;
}

}  // namespace vosmere
