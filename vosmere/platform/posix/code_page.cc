// Code pages: UTF-8 by the library's own code, everything else by iconv.
#include "vosmere/platform/internal/code_page.h"

#include <iconv.h>
#include <langinfo.h>

#include <bit>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <string>
#include <string_view>

#include "vosmere/platform/posix/utf8.h"

namespace vosmere {
namespace {

constexpr const char* kWideName =
    std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

/// Lengths that do not fit an int, utf8::kNoRoom among them, are reported as 0.
int Result(std::size_t length) {
  return length <= INT_MAX ? static_cast<int>(length) : 0;
}

/// A conversion by iconv into memory of the caller. Without room it writes to a scratch buffer and
/// only counts.
class Conversion {
 public:
  Conversion(const char* to, const char* from, void* out, std::size_t room)
      : converter_(iconv_open(to, from)),
        counts_(room == 0),
        out_(counts_ ? spill_ : static_cast<char*>(out)),
        room_(counts_ ? sizeof spill_ : room) {}
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  ~Conversion() {
    if (IsOpen()) iconv_close(converter_);
  }

  bool IsOpen() const { return converter_ != reinterpret_cast<iconv_t>(-1); }
  std::size_t written() const { return written_; }

  /// Converts as much as possible and advances `in` past it. False, with the reason in errno, when
  /// a part remains.
  bool Run(const char*& in, std::size_t& size) {
    for (;;) {
      const std::size_t room = room_;
      const std::size_t result = iconv(converter_, const_cast<char**>(&in), &size, &out_, &room_);
      written_ += room - room_;
      if (result != static_cast<std::size_t>(-1)) return true;
      if (errno != E2BIG || !counts_) return false;
      out_ = spill_;
      room_ = sizeof spill_;
    }
  }

 private:
  iconv_t converter_;
  bool counts_;
  char spill_[256];
  char* out_;
  std::size_t room_;
  std::size_t written_ = 0;
};

/// The length of the character at the start of a text, which is skipped when it cannot be
/// converted. In 8-bit text each byte counts as one.
std::size_t FirstCharacter(const char*, std::size_t) {
  return 1;
}
std::size_t FirstCharacter(const WChar* text, std::size_t length) {
  const bool pair = length > 1 && IsHighSurrogate(text[0]) && IsLowSurrogate(text[1]);
  return pair ? 2 : 1;
}

/// Converts a text; characters that cannot be converted become a question mark. Returns 0 when the
/// result does not fit.
template <class Unit>
std::size_t Convert(const char* to, const char* from, const Unit* text, std::size_t length,
                    void* out, std::size_t room) {
  Conversion conversion(to, from, out, room);
  if (!conversion.IsOpen()) return 0;
  const char* in = reinterpret_cast<const char*>(text);
  std::size_t size = length * sizeof(Unit);
  while (!conversion.Run(in, size)) {
    if (errno == E2BIG) return 0;
    const std::size_t left = size / sizeof(Unit);
    const std::size_t skipped = FirstCharacter(text + length - left, left);
    in += skipped * sizeof(Unit);
    size -= skipped * sizeof(Unit);
    const Unit question = '?';
    const char* mark = reinterpret_cast<const char*>(&question);
    std::size_t markSize = sizeof question;
    if (!conversion.Run(mark, markSize)) return 0;
  }
  const char* theEnd = nullptr;  // returns a stateful encoding to its initial state
  return conversion.Run(theEnd, size) ? conversion.written() : 0;
}

/// The name of a code page for iconv. Most have their number in it, those of Unix do not.
std::string NameOf(unsigned codePage) {
  constexpr struct {
    unsigned codePage;
    const char* name;
  } kNames[] = {{20866, "KOI8-R"}, {21866, "KOI8-U"}, {20932, "EUC-JP"}, {54936, "GB18030"}};
  if (codePage == kCodePageSystem) return nl_langinfo(CODESET);
  for (const auto& row : kNames)
    if (row.codePage == codePage) return row.name;
  constexpr unsigned kIso8859 = 28590;
  const bool isIso = codePage > kIso8859 && codePage <= kIso8859 + 16;
  return isIso ? "ISO-8859-" + std::to_string(codePage - kIso8859)
               : "CP" + std::to_string(codePage);
}

/// Whether a code page is UTF-8. The "C" locale is treated as UTF-8, of which its ASCII is a
/// subset: programs that never call setlocale would otherwise lose all letters beyond ASCII.
bool IsUtf8(unsigned codePage) {
  if (codePage == kCodePageUtf8) return true;
  if (codePage != kCodePageSystem) return false;
  const std::string_view name = nl_langinfo(CODESET);
  return name == "UTF-8" || name == "ANSI_X3.4-1968";
}

}  // namespace

int WideToBytes(unsigned codePage, const WChar* text, int length, char* bytes, int capacity) {
  if (length <= 0 || capacity < 0) return 0;
  if (!IsUtf8(codePage))
    return Result(Convert(NameOf(codePage).c_str(), kWideName, text, length, bytes, capacity));
  return Result(capacity ? utf8::Encode(text, length, bytes, capacity)
                         : utf8::EncodedLength(text, length));
}

int BytesToWide(unsigned codePage, const char* bytes, int length, WChar* text, int capacity) {
  if (length <= 0 || capacity < 0) return 0;
  if (!IsUtf8(codePage)) {
    const std::size_t room = capacity * sizeof(WChar);
    return Result(Convert(kWideName, NameOf(codePage).c_str(), bytes, length, text, room) /
                  sizeof(WChar));
  }
  return Result(capacity ? utf8::Decode(bytes, length, text, capacity)
                         : utf8::DecodedLength(bytes, length));
}

}  // namespace vosmere
