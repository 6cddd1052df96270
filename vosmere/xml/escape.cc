#include "vosmere/xml/escape.h"

#include <string_view>

#include "vosmere/platform/code_page.h"

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

int PieceToUtf8(WideView piece, char (&bytes)[kPieceBytes]) {
  return WideToBytes(kCodePageUtf8, piece.data, static_cast<int>(piece.size), bytes, kPieceBytes);
}

int PieceToEscapedUtf8(WideView piece, char (&bytes)[kEscapedPieceBytes]) {
  int at = 0;
  while (!piece.empty()) {
    const WideView plain = piece.First(PlainLength(piece));
    if (!plain.empty()) {
      const int length = WideToBytes(kCodePageUtf8, plain.data, static_cast<int>(plain.size),
                                     bytes + at, static_cast<int>(kEscapedPieceBytes) - at);
      if (length == 0) return 0;
      at += length;
    }
    piece = piece.From(plain.size);
    if (piece.empty()) break;
    const std::string_view entity = EntityFor(piece[0]);
    entity.copy(bytes + at, entity.size());
    at += static_cast<int>(entity.size());
    piece = piece.From(1);
  }
  return at;
}

}  // namespace vosmere
