// Converting UTF-16 text to UTF-8 markup, piece by piece.
#pragma once

#include <algorithm>
#include <cstddef>

#include "vosmere/base/wide_view.h"

namespace vosmere {

/// The largest number of code units in a piece, small enough to convert it in a buffer on the
/// stack.
inline constexpr std::size_t kTextPiece = 512;
/// The largest number of bytes for a code unit of plain and of escaped text.
inline constexpr std::size_t kUnitBytes = 3;
inline constexpr std::size_t kEscapedUnitBytes = 6;

/// The first piece of a text. Does not split a surrogate pair.
WideView NextPiece(WideView text);

/// Converts one piece to UTF-8. `bytes` must have room for kUnitBytes per code unit. Returns the
/// number of bytes; 0 means failure unless the piece is empty.
int PieceToUtf8(WideView piece, char* bytes);

/// Which characters are replaced by references.
enum class Escape {
  kFive,       ///< & < > " '
  kText,       ///< these and CR, which parsers turn into LF
  kAttribute,  ///< these, LF and tab, which parsers turn into blanks in attributes
  kAsLittle,   ///< & < " CR LF tab: the minimum for an attribute
};

/// The same with these characters replaced by references. `bytes` must have room for
/// kEscapedUnitBytes per code unit.
template <Escape kWhich>
int PieceToEscapedUtf8(WideView piece, char* bytes);

// What a piece of text contains, as bits.

inline constexpr WChar kMarkup = 1;       ///< & < > " or '
inline constexpr WChar kControls = 2;     ///< code units below the blank
inline constexpr WChar kBeyondAscii = 4;  ///< code units beyond ASCII
inline constexpr WChar kBeyondBasic = 8;  ///< surrogates, and code units beyond them

/// Returns the content bits of a piece. If there are none, `bytes` has received the piece as UTF-8;
/// otherwise it is undefined. It must have room for one byte per code unit.
unsigned CopyTamePiece(WideView piece, char* bytes);

/// Whether XML allows this code unit, alone or as half of a surrogate pair.
constexpr bool IsXmlUnit(WChar unit) {
  return (unit >= 0x20 && unit < 0xFFFE) || unit == '\t' || unit == '\n' || unit == '\r';
}

/// Whether XML allows every character of a text. False for unpaired surrogates.
bool IsXmlText(WideView text);

inline void BackslashesToSlashes(char* bytes, int length) {
  // std::transform stores every byte, unlike std::replace, which lets the compiler vectorise it.
  std::transform(bytes, bytes + length, bytes, [](char c) { return c == '\\' ? '/' : c; });
}
/// One of the conversions above, with every backslash replaced by a slash.
template <int (*Convert)(WideView piece, char* bytes)>
int WithSlashes(WideView piece, char* bytes) {
  const int length = Convert(piece, bytes);
  BackslashesToSlashes(bytes, length);
  return length;
}

}  // namespace vosmere
