// Converting UTF-16 text to UTF-8 markup, piece by piece.
#include "vosmere/xml/internal/escape.h"

#include <algorithm>
#include <string_view>

#include "vosmere/platform/internal/code_page.h"

namespace vosmere {
namespace {

template <Escape kWhich>
std::string_view EntityFor(WChar unit) {
  constexpr bool isBlankReplaced = kWhich == Escape::kAttribute || kWhich == Escape::kAsLittle;
  switch (unit) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return kWhich != Escape::kAsLittle ? "&gt;" : "";
    case '"': return "&quot;";
    case '\'': return kWhich != Escape::kAsLittle ? "&apos;" : "";
    case '\r': return kWhich != Escape::kFive ? "&#13;" : "";
    case '\n': return isBlankReplaced ? "&#10;" : "";
    case '\t': return isBlankReplaced ? "&#9;" : "";
    default: return {};
  }
}

/// A quick test of a whole piece, without branches so that the compiler can vectorise it: `&` and
/// `'` differ in one bit, and so do `<` and `>`. May be true although nothing needs escaping.
template <Escape kWhich>
bool NeedsEscaping(WideView text) {
  WChar found = 0;
  for (const WChar unit : text)
    found |= WChar{(unit | 1) == '\''} | WChar{(unit | 2) == '>'} | WChar{unit == '"'} |
             WChar{kWhich != Escape::kFive && unit < ' '};
  return found != 0;
}

template <Escape kWhich>
std::size_t PlainLength(WideView text) {
  std::size_t length = 0;
  while (length < text.size && EntityFor<kWhich>(text[length]).empty()) ++length;
  return length;
}

}  // namespace

WideView NextPiece(WideView text) {
  return FirstWhole(text, kTextPiece);
}

int PieceToUtf8(WideView piece, char* bytes) {
  return WideToBytes(kCodePageUtf8, piece.data, static_cast<int>(piece.size), bytes,
                     static_cast<int>(piece.size * kUnitBytes));
}

template <Escape kWhich>
int PieceToEscapedUtf8(WideView piece, char* bytes) {
  if (TamePieceToUtf8(piece, bytes)) return static_cast<int>(piece.size);
  if (!NeedsEscaping<kWhich>(piece)) return PieceToUtf8(piece, bytes);
  char* at = bytes;
  while (!piece.empty()) {
    const WideView plain = piece.First(PlainLength<kWhich>(piece));
    const int length = plain.empty() ? 0 : PieceToUtf8(plain, at);
    if (length == 0 && !plain.empty()) return 0;
    at += length;
    piece = piece.From(plain.size);
    if (piece.empty()) break;
    const std::string_view entity = EntityFor<kWhich>(piece[0]);
    at += entity.copy(at, entity.size());
    piece = piece.From(1);
  }
  return static_cast<int>(at - bytes);
}

template int PieceToEscapedUtf8<Escape::kFive>(WideView, char*);
template int PieceToEscapedUtf8<Escape::kText>(WideView, char*);
template int PieceToEscapedUtf8<Escape::kAttribute>(WideView, char*);
template int PieceToEscapedUtf8<Escape::kAsLittle>(WideView, char*);

// Tests and stores every code unit without branching, so that the compiler can vectorise the loop.
bool TamePieceToUtf8(WideView piece, char* bytes) {
  WChar found = 0;
  for (std::size_t i = 0; i < piece.size; ++i) {
    const WChar unit = piece[i];
    found |= WChar{(unit | 1) == '\''} | WChar{(unit | 2) == '>'} | WChar{unit == '"'} |
             WChar{unit < ' '} | WChar{unit > '~'};
    bytes[i] = static_cast<char>(unit);
  }
  return found == 0;
}

bool IsXmlText(WideView text) {
  WChar found = 0;
  for (const WChar unit : text) found |= WChar{unit < ' '} | WChar{unit >= 0xD800};
  if (!found) return true;
  return WellFormedLength(text) == text.size && std::all_of(text.begin(), text.end(), IsXmlUnit);
}

}  // namespace vosmere
