#include "vosmere/xml/internal/escape.h"

#include <string_view>

#include "vosmere/platform/internal/code_page.h"

namespace vosmere {
namespace {

std::string_view EntityFor(WChar unit) {
  switch (unit) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\'': return "&apos;";
    default: return {};
  }
}

/// Looks at all units, several at once: `&` and `'` differ in one bit, and so do `<` and `>`.
bool NeedsEscaping(WideView text) {
  WChar found = 0;
  for (const WChar unit : text)
    found |= WChar{(unit | 1) == '\''} | WChar{(unit | 2) == '>'} | WChar{unit == '"'};
  return found != 0;
}

std::size_t PlainLength(WideView text) {
  std::size_t length = 0;
  while (length < text.size && EntityFor(text[length]).empty()) ++length;
  return length;
}

bool IsHighSurrogate(WChar unit) {
  return (unit & 0xFC00) == 0xD800;
}

}  // namespace

WideView NextPiece(WideView text) {
  WideView piece = text.First(kTextPiece);
  if (piece.size < text.size && IsHighSurrogate(piece[piece.size - 1])) --piece.size;
  return piece;
}

int PieceToUtf8(WideView piece, char* bytes) {
  return WideToBytes(kCodePageUtf8, piece.data, static_cast<int>(piece.size), bytes,
                     static_cast<int>(piece.size * kUnitBytes));
}

int PieceToEscapedUtf8(WideView piece, char* bytes) {
  if (!NeedsEscaping(piece)) return PieceToUtf8(piece, bytes);
  char* at = bytes;
  while (!piece.empty()) {
    const WideView plain = piece.First(PlainLength(piece));
    const int length = plain.empty() ? 0 : PieceToUtf8(plain, at);
    if (length == 0 && !plain.empty()) return 0;
    at += length;
    piece = piece.From(plain.size);
    if (piece.empty()) break;
    const std::string_view entity = EntityFor(piece[0]);
    at += entity.copy(at, entity.size());
    piece = piece.From(1);
  }
  return static_cast<int>(at - bytes);
}

}  // namespace vosmere
