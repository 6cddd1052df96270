// Converts documents to UTF-8.
#include "vosmere/import/internal/decode.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <new>
#include <vector>

#include "vosmere/base/wide_view.h"
#include "vosmere/import/internal/utf8_text.h"
#include "vosmere/import/internal/western.h"
#include "vosmere/platform/internal/code_page.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kDeclarationBytes = 1024;
constexpr unsigned kLatin1 = 28591;
constexpr unsigned kWestern = 1252;

constexpr struct {
  std::string_view name;
  unsigned codePage;
} kNames[] = {
    {"utf-8", kCodePageUtf8},
    {"utf8", kCodePageUtf8},
    {"us-ascii", kWestern},
    {"ascii", kWestern},
    {"latin1", kWestern},
    {"shift_jis", 932},
    {"x-sjis", 932},
    {"sjis", 932},
    {"gb2312", 936},
    {"gbk", 936},
    {"ks_c_5601-1987", 949},
    {"euc-kr", 949},
    {"big5", 950},
    {"koi8-r", 20866},
    {"koi8-u", 21866},
    {"euc-jp", 20932},
    {"gb18030", 54936},
};

constexpr struct {
  std::string_view prefix;
  unsigned base;
} kNumbered[] = {{"windows-", 0}, {"cp", 0}, {"x-cp", 0}, {"iso-8859-", kLatin1 - 1}};

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF", kLittleMark = "\xFF\xFE",
                           kBigMark = "\xFE\xFF", kLittleStart("<\0", 2), kBigStart("\0<", 2);

bool Begins(std::string_view bytes, std::string_view mark) {
  return bytes.substr(0, mark.size()) == mark;
}

/// The number of an encoding as Windows counts them; 0 if it is not known.
unsigned CodePageOf(std::string_view name) {
  if (const auto* const row = FindNoCase(kNames, name)) return row->codePage;
  for (const auto& row : kNumbered) {
    unsigned number = 0;
    if (!SameNoCase(name.substr(0, row.prefix.size()), row.prefix)) continue;
    const std::string_view digits = name.substr(row.prefix.size());
    if (std::from_chars(digits.data(), digits.data() + digits.size(), number).ec != std::errc())
      continue;
    return row.base + number == kLatin1 ? kWestern : row.base + number;
  }
  return 0;
}

/// The length of the well-formed character at the start of a text; 0 if there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = at(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xC2   ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if (!IsContinuation(text[i])) return 0;
  const bool isOverlong = (lead == 0xE0 && at(1) < 0xA0) || (lead == 0xF0 && at(1) < 0x90);
  const bool isNone = (lead == 0xED && at(1) >= 0xA0) || (lead == 0xF4 && at(1) >= 0x90);
  return isOverlong || isNone ? 0 : length;
}

void AppendWestern(std::string& text, char byte) {
  AppendUtf8(text, WesternCharacter(static_cast<unsigned char>(byte)));
}

std::string FromWestern(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char byte : bytes) AppendWestern(text, byte);
  return text;
}

/// Reads UTF-8 in which some bytes are windows-1252.
std::string FromMixed(std::string_view bytes, RepairList& repairs) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (std::size_t i = 0; i < bytes.size();) {
    const std::size_t length = CharacterLength(bytes.substr(i));
    if (length > 0) {
      text.append(bytes, i, length);
      i += length;
      continue;
    }
    const std::size_t begin = text.size();
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string found;
    for (; i < bytes.size() && CharacterLength(bytes.substr(i)) == 0; ++i) {
      const auto byte = static_cast<unsigned char>(bytes[i]);
      if (found.size() < 80) found.append("\\x") += {kDigits[byte >> 4], kDigits[byte & 15]};
      AppendWestern(text, bytes[i]);
    }
    repairs.Add(RepairKind::kBytes, begin, found, std::string_view(text).substr(begin));
  }
  return text;
}

std::string FromWide(WideView units) {
  std::string text;
  text.reserve(units.size + units.size / 8);
  for (std::size_t i = 0; i < units.size; ++i) {
    std::uint32_t c = units[i];
    if (IsHighSurrogate(units[i]) && i + 1 < units.size && IsLowSurrogate(units[i + 1]))
      c = 0x10000 + ((c & 0x3FF) << 10) + (units[++i] & 0x3FF);
    AppendUtf8(text, c);
  }
  return text;
}

std::string FromUtf16(std::string_view bytes, bool bigEndian) {
  std::vector<WChar> units(bytes.size() / 2);
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<WChar>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return FromWide({units.data(), units.size()});
}

/// By the platform's own table; empty if it has none.
std::string FromCodePage(unsigned codePage, std::string_view bytes) {
  if (bytes.size() > INT_MAX) throw std::bad_alloc();
  const int size = static_cast<int>(bytes.size());
  std::vector<WChar> units(bytes.size());
  const int length = BytesToWide(codePage, bytes.data(), size, units.data(), size);
  return FromWide({units.data(), static_cast<std::size_t>(length)});
}

/// Reads a document without a mark: tries the encodings in the order that the header gives.
std::string FromBytes(std::string_view bytes, RepairList& repairs) {
  const std::string_view declared = DeclaredEncoding(bytes);
  const unsigned codePage = declared.empty() ? kCodePageUtf8 : CodePageOf(declared);
  const auto isNot = [&](std::string_view real) {
    repairs.Add(RepairKind::kEncoding, 0, declared.empty() ? "UTF-8" : declared, real);
  };
  bool hasLetters = false;
  if (IsUtf8(bytes, &hasLetters)) {
    if (codePage == 0 || (hasLetters && codePage != kCodePageUtf8)) isNot("UTF-8");
    return std::string(bytes);
  }
  if (codePage == kWestern) return FromWestern(bytes);
  if (codePage != kCodePageUtf8 && codePage != 0) {
    std::string text = FromCodePage(codePage, bytes);
    if (!text.empty()) return text;
  }
  const bool hasUtf8 = [&] {
    for (std::size_t i = 0, length = 0; i < bytes.size(); i += std::max<std::size_t>(length, 1))
      if ((length = CharacterLength(bytes.substr(i))) > 1) return true;
    return false;
  }();
  if (hasUtf8) return FromMixed(bytes, repairs);
  isNot("windows-1252");
  return FromWestern(bytes);
}

std::string FromAny(std::string_view bytes, RepairList& repairs) {
  if (!IsUtf16(bytes))
    return FromBytes(Begins(bytes, kUtf8Mark) ? bytes.substr(kUtf8Mark.size()) : bytes, repairs);
  const bool hasMark = Begins(bytes, kLittleMark) || Begins(bytes, kBigMark);
  const bool isBig = Begins(bytes, kBigMark) || Begins(bytes, kBigStart);
  std::string text = FromUtf16(bytes.substr(hasMark ? kBigMark.size() : 0), isBig);
  const std::string declared(DeclaredEncoding(text));
  if (!declared.empty() && !SameNoCase(declared.substr(0, 6), "utf-16"))
    repairs.Add(RepairKind::kEncoding, 0, declared, "UTF-16");
  return text;
}

void CutPadding(std::string& text, RepairList& repairs) {
  const std::size_t end = text.find_last_not_of('\0') + 1;
  if (end == text.size()) return;
  repairs.Add(RepairKind::kPadding, end, std::to_string(text.size() - end) + " zero bytes", {});
  text.resize(end);
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < ' ' && !ascii::IsBlank(c);
}

void BlankControls(std::string& text, RepairList& repairs) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\xEF' && text.compare(i, 2, "\xEF\xBF") == 0 && i + 2 < text.size() &&
        text[i + 2] > '\xBD') {
      repairs.Add(RepairKind::kControl, i, "U+FFFE or U+FFFF", "U+FFFD");
      text[i + 2] = '\xBD';
    }
    if (!IsControl(text[i])) continue;
    std::size_t end = i;
    while (end < text.size() && IsControl(text[end])) text[end++] = ' ';
    repairs.Add(RepairKind::kControl, i, std::to_string(end - i) + " of them", "blanks");
  }
}

}  // namespace

std::string_view DeclaredEncoding(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, kDeclarationBytes);
  const bool isXml = FindNoCase(head, "<?xml") != head.npos;
  const std::string_view key = isXml ? "encoding" : "charset";
  std::size_t at = FindNoCase(isXml ? head.substr(0, head.find("?>")) : head, key);
  if (at == head.npos) return {};
  at = head.find_first_not_of(" \t\r\n='\"", at + key.size());
  return at == head.npos ? std::string_view()
                         : head.substr(at, head.find_first_of(" \t\r\n'\">?;/", at) - at);
}

bool IsUtf16(std::string_view bytes) {
  return Begins(bytes, kLittleMark) || Begins(bytes, kBigMark) || Begins(bytes, kLittleStart) ||
         Begins(bytes, kBigStart);
}

bool IsUtf8(std::string_view bytes, bool* hasLetters) {
  *hasLetters = false;
  for (std::size_t i = 0; i < bytes.size();) {
    const std::size_t length = CharacterLength(bytes.substr(i));
    if (length == 0) return false;
    if (length > 1) *hasLetters = true;
    i += length;
  }
  return true;
}

std::string Decode(std::string_view bytes, RepairList& repairs) {
  std::string text = FromAny(bytes, repairs);
  CutPadding(text, repairs);
  BlankControls(text, repairs);
  return text;
}

}  // namespace vosmere::importing
