// Wide text on its way into markup.
#pragma once

#include <algorithm>
#include <cstddef>

#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Units that one piece of text has at most, so that its conversion fits a buffer on the stack.
inline constexpr std::size_t kTextPiece = 512;
/// Bytes that a unit of plain text, and of escaped text, becomes at most.
inline constexpr std::size_t kUnitBytes = 3;
inline constexpr std::size_t kEscapedUnitBytes = 6;

/// The next piece of a text, never parting a surrogate pair.
WideView NextPiece(WideView text);

/// Converts one piece to UTF-8, into room for kUnitBytes for each unit. Returns the number of
/// bytes; 0 is a failure unless the piece is empty.
int PieceToUtf8(WideView piece, char* bytes);

/// Which characters are replaced by references.
enum class Escape {
  kFive,       ///< & < > " '
  kText,       ///< these, and the carriage return, which parsers make a line feed of
  kAttribute,  ///< these, line feed and tab, which they make blanks of in an attribute
  kAsLittle,   ///< & < " and those three: what an attribute cannot do without
};

/// The same with such characters replaced, into room for kEscapedUnitBytes for each unit. No other
/// character is replaced.
template <Escape kWhich>
int PieceToEscapedUtf8(WideView piece, char* bytes);

/// Whether XML has this unit, alone or as half of a pair.
constexpr bool IsXmlUnit(WChar unit) {
  return (unit >= 0x20 && unit < 0xFFFE) || unit == '\t' || unit == '\n' || unit == '\r';
}

/// Whether XML has every character of a text.
bool IsXmlText(WideView text);

/// One of the above with every backslash turned into a slash.
template <int (*Convert)(WideView piece, char* bytes)>
int WithSlashes(WideView piece, char* bytes) {
  const int length = Convert(piece, bytes);
  // Storing every byte, which std::replace does not, lets several be done at once.
  std::transform(bytes, bytes + length, bytes, [](char c) { return c == '\\' ? '/' : c; });
  return length;
}

}  // namespace vosmere
