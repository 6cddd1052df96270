// Reads the text and attribute values of a plain document.
#include "vosmere/platform/posix/xml/plain_value.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vosmere/platform/posix/utf8.h"

namespace vosmere::posix {
namespace {

/// Whether some kind of value does not take this byte unchanged.
constexpr bool IsSpecial(unsigned char byte) {
  return (byte < 0x20) | (byte >= 0x80) | (byte == '&') | (byte == '<') | (byte == ']');
}

/// The most digits in a reference to a character. libxml2 does not accept all letters in longer
/// ones.
constexpr std::size_t kMostDigits = 9;

constexpr int kWord = sizeof(std::uint64_t);

/// Whether one of the eight bytes is special. Testing them at once is what makes this fast.
constexpr bool HasSpecial(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101, kHighs = 0x80 * kOnes;
  const auto hasZero = [](std::uint64_t bytes) { return (bytes - kOnes) & ~bytes; };
  return ((word | (word - 0x20 * kOnes) | hasZero(word ^ '&' * kOnes) |
           hasZero(word ^ '<' * kOnes) | hasZero(word ^ ']' * kOnes)) &
          kHighs) != 0;
}

/// Whether XML 1.0 allows a character.
constexpr bool IsCharacter(unsigned code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code <= 0x10FFFF && (code & ~0x7FFu) != 0xD800 && code != 0xFFFE && code != 0xFFFF;
}

/// Converts one value. The output never has more code units than the input has bytes.
class Reader {
 public:
  Reader(std::string_view piece, PlainValue kind, WChar* out)
      : at_(piece.data()), end_(at_ + piece.size()), kind_(kind), out_(out) {}

  bool Read() {
    for (;;) {
      TakePlain();
      if (at_ == end_) return true;
      if (!TakeSpecial()) return false;
    }
  }
  WChar* out() const { return out_; }

 private:
  void TakePlain() {
    for (std::uint64_t word; end_ - at_ >= kWord; at_ += kWord, out_ += kWord) {
      std::memcpy(&word, at_, kWord);
      if (HasSpecial(word)) break;
      for (int i = 0; i < kWord; ++i) out_[i] = static_cast<unsigned char>(at_[i]);
    }
    while (at_ != end_ && !IsSpecial(*at_)) *out_++ = static_cast<unsigned char>(*at_++);
  }

  bool TakeSpecial() {
    const auto byte = static_cast<unsigned char>(*at_);
    if (byte >= 0x80) return TakeBeyondAscii();
    switch (byte) {
      case '&': return kind_ == PlainValue::kLiteral ? Take(byte) : TakeReference();
      case '<': return kind_ == PlainValue::kLiteral && Take(byte);
      case ']': return !(kind_ == PlainValue::kText && Begins("]]>")) && Take(byte);
      case '\r':
      case '\n':
      case '\t': return TakeBlanks();
      default: return false;
    }
  }

  /// Line ends and the indentation after them, which is most of the text between elements.
  bool TakeBlanks() {
    const bool isAttribute = kind_ == PlainValue::kAttribute;
    for (; at_ != end_; ++at_) {
      char blank = *at_;
      if (blank == '\r') {
        if (end_ - at_ > 1 && at_[1] == '\n') ++at_;
        blank = '\n';
      } else if (blank != '\n' && blank != '\t' && blank != ' ') {
        break;
      }
      *out_++ = isAttribute ? ' ' : static_cast<WChar>(blank);
    }
    return true;
  }

  bool Begins(std::string_view text) const {
    return std::string_view(at_, static_cast<std::size_t>(end_ - at_)).substr(0, text.size()) ==
           text;
  }

  bool Take(unsigned unit) {
    *out_++ = static_cast<WChar>(unit);
    ++at_;
    return true;
  }

  void Put(unsigned code) {
    if (code >= 0x10000) {
      *out_++ = static_cast<WChar>(0xD7C0 + (code >> 10));
      code = 0xDC00 | (code & 0x3FF);
    }
    *out_++ = static_cast<WChar>(code);
  }

  /// Ill-formed bytes, U+FFFE and U+FFFF are not allowed. Ill-formed bytes decode to U+FFFD, so a
  /// real U+FFFD is left to libxml2 too.
  bool TakeBeyondAscii() {
    const char* const begin = at_;
    while (at_ != end_ && static_cast<unsigned char>(*at_) >= 0x80) ++at_;
    const auto length = static_cast<std::size_t>(at_ - begin);
    const WChar* const run = out_;
    out_ += utf8::Decode(begin, length, out_, length);
    return std::none_of(run, static_cast<const WChar*>(out_),
                        [](WChar unit) { return unit >= 0xFFFD; });
  }

  /// A character never has more code units than its reference has bytes.
  bool TakeReference() {
    const auto* const semicolon =
        static_cast<const char*>(std::memchr(at_, ';', static_cast<std::size_t>(end_ - at_)));
    if (!semicolon) return false;
    const unsigned code = CodeOf(std::string_view(at_ + 1, semicolon));
    if (code == 0) return false;
    Put(code);
    at_ = semicolon + 1;
    return true;
  }

  /// The character of a reference; 0 for any other reference.
  static unsigned CodeOf(std::string_view reference) {
    struct Named {
      std::string_view name;
      char character;
    };
    static constexpr Named kNamed[] = {
        {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const Named& named : kNamed)
      if (reference == named.name) return static_cast<unsigned char>(named.character);

    if (reference.substr(0, 1) != "#") return 0;
    const bool isHex = reference.substr(1, 1) == "x";
    const std::string_view digits = reference.substr(1 + isHex);
    if (digits.size() > kMostDigits) return 0;
    const char* const end = digits.data() + digits.size();
    unsigned code = 0;
    const auto parsed = std::from_chars(digits.data(), end, code, isHex ? 16 : 10);
    if (parsed.ec != std::errc() || parsed.ptr != end) return 0;
    return IsCharacter(code) ? code : 0;
  }

  const char* at_;
  const char* end_;
  PlainValue kind_;
  WChar* out_;
};

}  // namespace

bool ReadPlainValue(XmlArena& arena, std::string_view piece, PlainValue kind, XmlValue* value) {
  WChar* const begin = arena.BeginValue(piece.size());
  Reader reader(piece, kind, begin);
  const bool isPlain = reader.Read();
  *value = arena.EndValue(begin, reader.out());
  return isPlain;
}

}  // namespace vosmere::posix
