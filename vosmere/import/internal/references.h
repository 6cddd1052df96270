// The references of markup: "&amp;", "&#65;", "&nbsp;".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vosmere::importing {

struct Reference {
  std::size_t size = 0;         ///< in bytes, with "&" and ";"; 0 if it is none
  std::uint32_t character = 0;  ///< 0 if the name is not known or the number is no character
  bool isXml = false;           ///< whether XML knows it
};

/// The reference at the start of a text, which begins with '&'.
Reference ReadReference(std::string_view text);

/// A text with its references replaced by their characters. Those from 128 to 159 are read as
/// windows-1252, as browsers do; what is no reference stays.
std::string WithoutReferences(std::string_view text);

}  // namespace vosmere::importing
