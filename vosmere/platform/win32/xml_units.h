// XmlUnits, the code units of a document before it is parsed.
#pragma once

#include <string_view>

#include "vosmere/base/wide_view.h"

namespace vosmere::win32 {

/// The code units of a document before it is parsed: bytes, or pairs of bytes if the first ones
/// show that it is UTF-16. They are used to find markup, which is ASCII in both cases.
class XmlUnits {
 public:
  explicit XmlUnits(std::string_view bytes) : bytes_(bytes) {
    const unsigned first = At(0), second = At(1);
    if (first == 0 || (first == 0xFE && second == 0xFF))
      width_ = 2;
    else if (second == 0 || (first == 0xFF && second == 0xFE))
      width_ = 2, low_ = 0;
  }
  explicit XmlUnits(WideView text)
      : bytes_(reinterpret_cast<const char*>(text.data), text.size * 2), width_(2), low_(0) {}

  std::size_t width() const { return width_; }
  std::size_t size() const { return bytes_.size() / width_; }
  /// The code unit at `i`; beyond the end it is 1, which no document may contain.
  unsigned operator[](std::size_t i) const {
    return width_ == 1 ? At(i) : At(2 * i + low_) | At(2 * i + 1 - low_) << 8;
  }

  bool StartsWith(std::size_t at, std::string_view token) const {
    for (std::size_t i = 0; i < token.size(); ++i)
      if ((*this)[at + i] != static_cast<unsigned char>(token[i])) return false;
    return true;
  }
  /// The position after the next `token`; the end when there is none.
  std::size_t Past(std::size_t at, std::string_view token) const {
    while (at < size() && !StartsWith(at, token)) ++at;
    return at < size() ? at + token.size() : size();
  }
  /// The number of code units of the byte-order mark.
  std::size_t MarkLength() const {
    if (width_ == 2) return (*this)[0] == 0xFEFF ? 1 : 0;
    return StartsWith(0, "\xEF\xBB\xBF") ? 3 : 0;
  }
  /// Whether the code unit continues a character, so that it has no column of its own.
  bool ContinuesCharacter(std::size_t i) const {
    return width_ == 1 ? ((*this)[i] & 0xC0) == 0x80
                       : IsLowSurrogate(static_cast<WChar>((*this)[i]));
  }

 private:
  unsigned At(std::size_t i) const {
    return i < bytes_.size() ? static_cast<unsigned char>(bytes_[i]) : 1;
  }

  std::string_view bytes_;
  std::size_t width_ = 1;
  std::size_t low_ = 1;  // which byte of a pair is the low one
};

}  // namespace vosmere::win32
