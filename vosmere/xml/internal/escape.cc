// Converting UTF-16 text to UTF-8 markup, piece by piece.
#include "vosmere/xml/internal/escape.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "vosmere/platform/internal/code_page.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

/// What a piece contains, as bits. No branches, so that compilers look at many units at once.
unsigned ContentOf(WideView piece) {
  WChar markup = 0, controls = 0, beyondAscii = 0, beyondBasic = 0;
  for (const WChar unit : piece) {
    // `&` and `'` differ in one bit, and so do `<` and `>`.
    markup |= WChar{(unit | 1) == '\''} | WChar{(unit | 2) == '>'} | WChar{unit == '"'};
    controls |= WChar{unit < ' '};
    beyondAscii |= WChar{unit >= 0x80};
    beyondBasic |= WChar{unit >= 0xD800};
  }
  return (markup ? kMarkup : 0u) | (controls ? kControls : 0u) | (beyondAscii ? kBeyondAscii : 0u) |
         (beyondBasic ? kBeyondBasic : 0u);
}

#ifdef __SSE2__
// Most texts are short: they are looked at in two blocks of this size together.
constexpr std::size_t kBlock = 8;

/// What the blocks of a piece contain: bytes are 255 where there is any.
struct Seen {
  __m128i markup = {}, beyondAscii = {}, rare = {};

  /// Returns both blocks as bytes. Units from U+0100 on become 255, those from U+8000 on 0.
  __m128i Look(const WChar* low, const WChar* high) {
    const auto load = [](const WChar* at) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    };
    const auto is = [](__m128i bytes, char byte) {
      return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte));
    };
    const auto with = [](__m128i bytes, char bit) { return bytes | _mm_set1_epi8(bit); };
    const __m128i bytes = _mm_packus_epi16(load(low), load(high));
    markup |= is(with(bytes, 1), '\'') | is(with(bytes, 2), '>') | is(bytes, '"');
    beyondAscii |= bytes;
    rare |= is(_mm_max_epu8(bytes, _mm_set1_epi8(' ' - 1)), ' ' - 1);
    return bytes;
  }
};
#endif

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

#ifdef __SSE2__
// Code units one by one would take longer than all blocks of most texts. The last block therefore
// overlaps the one before it, and a short text is copied into a whole block.
unsigned CopyTamePiece(WideView piece, char* bytes) {
  Seen seen;
  if (piece.size >= 2 * kBlock) {
    const std::size_t last = piece.size - 2 * kBlock;
    for (std::size_t at = 0;; at = std::min(at + 2 * kBlock, last)) {
      const __m128i copy = seen.Look(piece.data + at, piece.data + at + kBlock);
      std::memcpy(bytes + at, &copy, 2 * kBlock);
      if (at == last) break;
    }
  } else if (piece.size >= kBlock) {
    const std::size_t last = piece.size - kBlock;
    const __m128i copy = seen.Look(piece.data, piece.data + last);
    std::memcpy(bytes, &copy, kBlock);
    std::memcpy(bytes + last, reinterpret_cast<const char*>(&copy) + kBlock, kBlock);
  } else {
    WChar few[kBlock];
    std::fill(std::copy(piece.begin(), piece.end(), few), few + kBlock, WChar{' '});
    const __m128i copy = seen.Look(few, few);
    std::copy_n(reinterpret_cast<const char*>(&copy), piece.size, bytes);
  }
  const auto isAny = [](__m128i highBits) { return _mm_movemask_epi8(highBits) != 0; };
  if (isAny(seen.rare)) return ContentOf(piece);
  return (isAny(seen.markup) ? kMarkup : 0u) | (isAny(seen.beyondAscii) ? kBeyondAscii : 0u);
}
#else
unsigned CopyTamePiece(WideView piece, char* bytes) {
  std::transform(piece.begin(), piece.end(), bytes,
                 [](WChar unit) { return static_cast<char>(unit); });
  return ContentOf(piece);
}
#endif

bool IsXmlText(WideView text) {
  WChar found = 0;
  for (const WChar unit : text) found |= WChar{unit < ' '} | WChar{unit >= 0xD800};
  if (!found) return true;
  return WellFormedLength(text) == text.size && std::all_of(text.begin(), text.end(), IsXmlUnit);
}

}  // namespace vosmere
