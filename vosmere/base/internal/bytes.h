// Numbers and texts as bytes, as the files of a store have them.
//
// Numbers are little-endian in groups of seven bits, the high bit set on all bytes but the last;
// signed ones have their sign in the lowest bit. A text is a number and its units: 0 is null, else
// one more than twice the count of units, plus one where a unit takes two bytes instead of one (as
// soon as one of them is not ASCII). So a text comes back exactly, unpaired surrogates included.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

class ByteWriter {
 public:
  explicit ByteWriter(std::string& bytes) : bytes_(bytes) {}

  void Number(std::uint64_t number) {
    if (number < 0x80) return bytes_.push_back(static_cast<char>(number));
    char groups[10];
    std::size_t count = 0;
    for (; number >= 0x80; number >>= 7) groups[count++] = static_cast<char>(number | 0x80);
    groups[count++] = static_cast<char>(number);
    bytes_.append(groups, count);
  }
  void Signed(LONG number) {
    const auto bits = static_cast<ULONG>(number);
    Number((bits * 2) ^ (number < 0 ? 0xFFFFFFFFu : 0u));
  }
  void Text(const WChar* text) {
    if (!text) return Number(0);
    const WideView units(text);
    WChar all = 0;
    for (const WChar unit : units) all |= unit;
    const bool wide = all >= 0x80;
    Number(units.size * 2 + wide + 1);
    const std::size_t size = bytes_.size();
    bytes_.resize(size + units.size * (wide + 1));
    char* at = bytes_.data() + size;
    for (const WChar unit : units) {
      *at++ = static_cast<char>(unit);
      if (wide) *at++ = static_cast<char>(unit >> 8);
    }
  }
  void Raw(std::string_view bytes) { bytes_ += bytes; }

 private:
  std::string& bytes_;
};

/// Reads what ByteWriter wrote. What cannot be read makes it fail for good, and gives zeros.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes)
      : at_(reinterpret_cast<const unsigned char*>(bytes.data())), end_(at_ + bytes.size()) {}

  bool failed() const { return failed_; }
  bool AtEnd() const { return at_ == end_; }

  std::uint64_t Number() {
    std::uint64_t number = 0;
    for (int shift = 0; at_ != end_ && shift < 64; shift += 7) {
      const std::uint64_t byte = *at_++;
      number |= (byte & 0x7F) << shift;
      if (byte < 0x80) return number;
    }
    return Fail();
  }
  LONG Signed() {
    const auto bits = static_cast<ULONG>(Number());
    return static_cast<LONG>((bits >> 1) ^ (bits & 1 ? 0xFFFFFFFFu : 0u));
  }
  /// Lives until the next text.
  const WChar* Text() {
    const std::uint64_t number = Number();
    if (number == 0) return nullptr;
    const std::uint64_t units = (number - 1) / 2;
    const bool wide = (number - 1) & 1;
    if (units > static_cast<std::uint64_t>(end_ - at_) >> wide) return Fail(), nullptr;
    if (units >= kShort) long_.resize(units + 1);
    WChar* const text = units >= kShort ? long_.data() : short_;
    for (std::uint64_t i = 0; i < units; ++i) {
      text[i] = *at_++;
      if (wide) text[i] = static_cast<WChar>(text[i] | *at_++ << 8);
    }
    text[units] = 0;
    return text;
  }
  void SkipText() {
    const std::uint64_t number = Number();
    if (number) Raw(((number - 1) / 2) << ((number - 1) & 1));
  }
  std::string_view Raw(std::uint64_t size) {
    if (size > static_cast<std::uint64_t>(end_ - at_)) return Fail(), std::string_view();
    const auto* const bytes = reinterpret_cast<const char*>(at_);
    at_ += size;
    return {bytes, static_cast<std::size_t>(size)};
  }

 private:
  int Fail() {
    failed_ = true;
    at_ = end_;
    return 0;
  }

  const unsigned char* at_;
  const unsigned char* end_;
  bool failed_ = false;
  static constexpr std::size_t kShort = 128;
  WChar short_[kShort];
  std::vector<WChar> long_;
};

}  // namespace vosmere
