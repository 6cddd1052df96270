// Reads the text and attribute values of a plain document.
#include "vosmere/platform/posix/xml/plain_value.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <utility>

#include "vosmere/platform/posix/utf8.h"
#include "vosmere/platform/posix/utf8_character.h"
#include "vosmere/platform/posix/xml/tame_bytes.h"

namespace vosmere::posix {
namespace {

/// The most digits in a reference to a character. libxml2 does not accept all letters in longer
/// ones.
constexpr std::size_t kMostDigits = 9;

/// Bytes that are decoded one character at a time.
constexpr std::size_t kShortRun = 16;

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
    const char* const begin = std::exchange(at_, PassTame(at_, end_, ']'));
    const auto length = static_cast<std::size_t>(at_ - begin);
    Widen(begin, length, out_);
    out_ += length;
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

  /// Ill-formed bytes, U+FFFE and U+FFFF are not allowed. Ill-formed bytes decode to U+FFFD, so a
  /// real U+FFFD is left to libxml2 too.
  bool TakeBeyondAscii() {
    const char* const begin = at_;
    while (at_ != end_ && static_cast<unsigned char>(*at_) >= 0x80) ++at_;
    const auto length = static_cast<std::size_t>(at_ - begin);
    const WChar* const run = out_;
    if (length > kShortRun)
      out_ += utf8::Decode(begin, length, out_, length);
    else
      DecodeShort(reinterpret_cast<const utf8::Byte*>(begin));
    return std::none_of(run, static_cast<const WChar*>(out_),
                        [](WChar unit) { return unit >= 0xFFFD; });
  }

  /// For an accented letter in a word, utf8::Decode would take longer to begin than this in all.
  void DecodeShort(const utf8::Byte* in) {
    for (const auto* const end = reinterpret_cast<const utf8::Byte*>(at_); in != end;) {
      const utf8::Character character = utf8::DecodeOne(utf8::UpToFourBytes(in, end));
      in += character.length;
      utf8::Put(character.code, out_);
    }
  }

  /// A character never has more code units than its reference has bytes.
  bool TakeReference() {
    const auto* const semicolon =
        static_cast<const char*>(std::memchr(at_, ';', static_cast<std::size_t>(end_ - at_)));
    if (!semicolon) return false;
    const unsigned code = CodeOf(std::string_view(at_ + 1, semicolon));
    if (code == 0) return false;
    utf8::Put(code, out_);
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
