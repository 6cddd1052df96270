// A scanner that checks what documents usually get wrong, and knows where it is.
#include "vosmere/platform/win32/xml_first_error.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace vosmere::win32 {
namespace {

class Scanner {
 public:
  explicit Scanner(const XmlUnits& units)
      : units_(units), isUtf8_(units.width() == 1 && !DeclaresEncoding()), at_(units.MarkLength()) {
    start_ = at_;
  }

  std::size_t Find() {
    while (at_ < units_.size())
      if (!Next()) return std::min(at_, units_.size());
    return kNoErrorFound;
  }

 private:
  struct Name {
    std::size_t start, length;
  };

  // Each of these reads what is next. False leaves `at_` where the error is.

  bool Next() {
    if (Is('<')) return Markup();
    if (open_.empty()) return SkipSpace();
    if (Is('&')) return Reference();
    return !units_.StartsWith(at_, "]]>") && Character();
  }

  bool Markup() {
    if (units_.StartsWith(at_, "<!--")) return Comment();
    if (units_.StartsWith(at_, "<?")) return Instruction();
    if (units_.StartsWith(at_, "<![CDATA[")) return !open_.empty() && SkipPast("]]>");
    if (hasRoot_ && open_.empty()) return false;
    if (units_.StartsWith(at_, "</")) return EndTag();
    hasRoot_ = true;
    return StartTag();
  }

  bool Comment() {
    const std::size_t hyphens = units_.Past(at_ + 4, "--");
    at_ = hyphens;
    if (Take('>') || hyphens == units_.size()) return true;
    at_ = hyphens - 2;
    return false;
  }

  bool Instruction() {
    const bool isDeclaration = units_.StartsWith(at_, "<?xml") && !IsInName(units_[at_ + 5]);
    if (!isDeclaration || at_ == start_) return SkipPast("?>");
    at_ += 5;
    return false;
  }

  bool StartTag() {
    ++at_;
    Name tag;
    if (!TakeName(&tag)) return false;
    attributes_.clear();
    bool isTwice = false;
    for (;;) {
      const bool hasSpace = SkipSpace();
      if (Is('>') || units_.StartsWith(at_, "/>")) break;
      Name name;
      if (!hasSpace || !TakeName(&name) || !Value()) return false;
      for (const Name& other : attributes_) isTwice = isTwice || IsSame(name, other);
      attributes_.push_back(name);
    }
    if (isTwice) return false;
    if (Take('/'))
      ++at_;
    else if (Take('>'))
      open_.push_back(tag);
    return true;
  }

  bool Value() {
    SkipSpace();
    if (!Take('=')) return false;
    SkipSpace();
    const unsigned quote = units_[at_];
    if (!Take('"') && !Take('\'')) return false;
    while (!Take(quote))
      if (at_ >= units_.size() || Is('<') || !(Is('&') ? Reference() : Character())) return false;
    return true;
  }

  bool EndTag() {
    at_ += 2;
    Name tag;
    if (open_.empty() || !TakeName(&tag)) return false;
    SkipSpace();
    if (!Take('>')) return false;
    const bool isOpen = IsSame(tag, open_.back());
    open_.pop_back();
    return isOpen;
  }

  bool Reference() {
    ++at_;
    if (Take('#')) return Number();
    Name name;
    if (!TakeName(&name) || !Take(';')) return false;
    constexpr std::string_view kKnown[] = {"amp;", "lt;", "gt;", "quot;", "apos;"};
    return std::any_of(std::begin(kKnown), std::end(kKnown), [&](std::string_view known) {
      return units_.StartsWith(name.start, known);
    });
  }

  bool Number() {
    const unsigned base = Take('x') ? 16 : 10;
    unsigned number = 0;
    while (!Take(';')) {
      const unsigned digit = DigitOf(units_[at_]);
      if (digit >= base) return false;
      number = std::min(number * base + digit, 0x110000U);
      ++at_;
    }
    return IsCharacter(number);
  }

  bool Character() {
    const unsigned unit = units_[at_];
    const std::size_t length = isUtf8_ && unit >= 0x80 ? Utf8Length() : 1;
    if (length == 0 || (unit < 0x80 && !IsCharacter(unit))) return false;
    at_ += length;
    return true;
  }

  /// The bytes of the character that begins with a byte above 127; 0 if it is not valid.
  std::size_t Utf8Length() const {
    const unsigned first = units_[at_], second = units_[at_ + 1];
    const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    for (std::size_t i = 1; i < length; ++i)
      if ((units_[at_ + i] & 0xC0) != 0x80) return 0;
    const bool isOutside = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                           (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return first > 0xF4 || isOutside ? 0 : length;
  }

  bool TakeName(Name* name) {
    name->start = at_;
    if (!IsInName(units_[at_]) || DigitOf(units_[at_]) < 10 || Is('-') || Is('.')) return false;
    while (at_ < units_.size() && IsInName(units_[at_])) ++at_;
    name->length = at_ - name->start;
    return true;
  }
  /// False when there is none.
  bool SkipSpace() {
    const std::size_t before = at_;
    while (Is(' ') || Is('\t') || Is('\r') || Is('\n')) ++at_;
    return at_ != before;
  }
  bool SkipPast(std::string_view token) {
    at_ = units_.Past(at_, token);
    return true;
  }
  bool Take(unsigned unit) {
    if (!Is(unit)) return false;
    ++at_;
    return true;
  }
  bool Is(unsigned unit) const { return at_ < units_.size() && units_[at_] == unit; }

  bool IsSame(const Name& a, const Name& b) const {
    if (a.length != b.length) return false;
    for (std::size_t i = 0; i < a.length; ++i)
      if (units_[a.start + i] != units_[b.start + i]) return false;
    return true;
  }
  bool DeclaresEncoding() const {
    const std::size_t end = units_.Past(0, "?>");
    return units_.StartsWith(units_.MarkLength(), "<?xml") && units_.Past(0, "encoding") < end &&
           units_.Past(0, "UTF-8") > end && units_.Past(0, "utf-8") > end;
  }

  static unsigned DigitOf(unsigned unit) {
    const unsigned letter = unit | 0x20;
    if (unit >= '0' && unit <= '9') return unit - '0';
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : 99;
  }
  static bool IsInName(unsigned unit) {
    const unsigned letter = unit | 0x20;
    return (letter >= 'a' && letter <= 'z') || (unit >= '0' && unit <= ':') || unit == '_' ||
           unit == '-' || unit == '.' || unit >= 0x80;
  }
  static bool IsCharacter(unsigned number) {
    return number >= 0x20 ? number < 0xD800 || (number > 0xDFFF && number < 0xFFFE) ||
                                (number > 0xFFFF && number < 0x110000)
                          : number == '\t' || number == '\n' || number == '\r';
  }

  const XmlUnits& units_;
  const bool isUtf8_;
  std::size_t at_;
  std::size_t start_;
  bool hasRoot_ = false;
  std::vector<Name> open_;
  std::vector<Name> attributes_;
};

}  // namespace

std::size_t FirstError(const XmlUnits& document) {
  return Scanner(document).Find();
}

}  // namespace vosmere::win32
