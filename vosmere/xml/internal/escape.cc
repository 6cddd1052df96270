// Converting UTF-16 text to UTF-8 markup, piece by piece.
#include "vosmere/xml/internal/escape.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
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

template <Escape kWhich>
std::size_t PlainLength(WideView text) {
  std::size_t length = 0;
  while (length < text.size && EntityFor<kWhich>(text[length]).empty()) ++length;
  return length;
}

// Code units that are looked at together.
constexpr std::size_t kBlock = 8;
using Units [[gnu::vector_size(kBlock * sizeof(WChar))]] = WChar;
using Bytes [[gnu::vector_size(kBlock)]] = char;

/// All units joined by "or".
WChar Joined(const Units& units) {
  std::uint64_t halves[2];
  std::memcpy(halves, &units, sizeof halves);
  std::uint64_t joined = halves[0] | halves[1];
  joined |= joined >> 32;
  return static_cast<WChar>(joined | joined >> 16);
}

/// Those bits of a piece's content that its highest unit makes unclear.
unsigned HighContent(WideView piece) {
  WChar controls = 0, beyondBasic = 0;
  for (const WChar unit : piece) {
    controls |= WChar{unit < ' '};
    beyondBasic |= WChar{unit >= 0xD800};
  }
  return (controls ? kControls : 0u) | (beyondBasic ? kBeyondBasic : 0u);
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
  constexpr unsigned kReplaced = kWhich == Escape::kFive ? kMarkup : kMarkup | kControls;
  const unsigned content = CopyTamePiece(piece, bytes);
  if (!content) return static_cast<int>(piece.size);
  if (!(content & kReplaced)) return PieceToUtf8(piece, bytes);
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

// In blocks of a fixed size. The last one overlaps the one before it, and a short text is copied
// into a whole block, because code units one by one would take longer than all blocks of most
// texts.
unsigned CopyTamePiece(WideView piece, char* bytes) {
  WChar few[kBlock];
  char fewBytes[kBlock];
  const bool isShort = piece.size < kBlock;
  if (isShort) std::fill(std::copy(piece.begin(), piece.end(), few), few + kBlock, WChar{' '});
  const WChar* const from = isShort ? few : piece.data;
  char* const to = isShort ? fewBytes : bytes;
  const std::size_t last = isShort ? 0 : piece.size - kBlock;
  Units markup = {}, all = {}, below = {};
  for (std::size_t at = 0;; at = std::min(at + kBlock, last)) {
    Units units;
    std::memcpy(&units, from + at, sizeof units);
    // `&` and `'` differ in one bit, and so do `<` and `>`.
    markup |= Units(((units | 1) == '\'') | ((units | 2) == '>') | (units == '"'));
    all |= units;
    below |= units - ' ';  // the highest bit of what is below the blank, or high itself
    const Bytes copy = __builtin_convertvector(units, Bytes);
    std::memcpy(to + at, &copy, sizeof copy);
    if (at == last) break;
  }
  if (isShort) std::copy_n(fewBytes, piece.size, bytes);
  constexpr WChar kHigh = 0x8000;
  unsigned content = (Joined(markup) ? kMarkup : 0u) | (Joined(all) >= 0x80 ? kBeyondAscii : 0u);
  if (Joined(all) & kHigh) return content | HighContent(piece);
  return Joined(below) & kHigh ? content | kControls : content;
}

bool IsXmlText(WideView text) {
  WChar found = 0;
  for (const WChar unit : text) found |= WChar{unit < ' '} | WChar{unit >= 0xD800};
  if (!found) return true;
  return WellFormedLength(text) == text.size && std::all_of(text.begin(), text.end(), IsXmlUnit);
}

}  // namespace vosmere
