// Joins ASCII literals and UTF-16 texts into a system string.
#pragma once

#include <cstring>
#include <initializer_list>
#include <memory>

#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// ASCII or UTF-16 text that the caller owns. Null is the empty text.
class TextPiece {
 public:
  TextPiece(const char* ascii) : ascii_(ascii), size_(ascii ? std::strlen(ascii) : 0) {}
  TextPiece(const WChar* text) : TextPiece(WideView(text)) {}
  TextPiece(WideView text) : wide_(text.data), size_(text.size) {}

  std::size_t size() const { return size_; }
  WChar operator[](std::size_t i) const {
    return ascii_ ? static_cast<unsigned char>(ascii_[i]) : wide_[i];
  }

 private:
  const char* ascii_ = nullptr;
  const WChar* wide_ = nullptr;
  std::size_t size_;
};

struct SystemStringFree {
  void operator()(BSTR text) const { SysFreeString(text); }
};
using JoinedText = std::unique_ptr<WChar, SystemStringFree>;

/// The pieces joined into a new system string; null when memory runs out.
inline JoinedText Join(std::initializer_list<TextPiece> pieces) {
  std::size_t size = 0;
  for (const TextPiece& piece : pieces) size += piece.size();
  JoinedText text(SysAllocStringLen(nullptr, size));
  WChar* end = text.get();
  for (const TextPiece& piece : pieces)
    for (std::size_t i = 0; text && i < piece.size(); ++i) *end++ = piece[i];
  return text;
}

}  // namespace vosmere
