// UTF-8 conversions for the texts of programs.
#include "vosmere/cpp/text.h"

#include <climits>

#include "vosmere/platform/internal/code_page.h"

namespace vosmere::detail {
namespace {

constexpr std::size_t kPiece = 64;

bool IsTrailing(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The number of bytes in a first piece that does not split a character. A character has at most
/// three trailing bytes, so after four of them the text can be split without changing the result.
std::size_t PieceLength(const char* utf8, std::size_t length) {
  if (length <= kPiece) return length;
  std::size_t end = kPiece;
  while (end > kPiece - 4 && IsTrailing(utf8[end])) --end;
  return IsTrailing(utf8[end]) ? kPiece : end;
}

int Int(std::size_t length) {
  if (length > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(length);
}

}  // namespace

std::size_t Utf8ToWide(const char* utf8, std::size_t length, WChar* units) {
  const int count = BytesToWide(kCodePageUtf8, utf8, Int(length), units, Int(length));
  if (count == 0 && length > 0) throw std::bad_alloc();
  return static_cast<std::size_t>(count);
}

std::size_t Utf8Length(const WChar* text, std::size_t length) {
  const int size = WideToBytes(kCodePageUtf8, text, Int(length), nullptr, 0);
  if (size == 0 && length > 0) throw std::bad_alloc();
  return static_cast<std::size_t>(size);
}

void WideToUtf8(const WChar* text, std::size_t length, char* utf8, std::size_t size) {
  WideToBytes(kCodePageUtf8, text, Int(length), utf8, Int(size));
}

// Converts piece by piece on the stack, so that comparing does not allocate.
bool EqualsUtf8(const WChar* text, const char* utf8, std::size_t length) {
  WChar piece[kPiece];
  while (length > 0) {
    const std::size_t size = PieceLength(utf8, length);
    const std::size_t count = Utf8ToWide(utf8, size, piece);
    for (std::size_t i = 0; i < count; ++i, ++text)
      if (*text == 0 || *text != piece[i]) return false;
    utf8 += size;
    length -= size;
  }
  return *text == 0;
}

}  // namespace vosmere::detail
