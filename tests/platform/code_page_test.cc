#include "vosmere/platform/internal/code_page.h"

#include <random>
#include <utility>

#include "tests/support/test.h"

namespace vosmere::test::code_page {

using namespace std::string_literals;

/// Converts with too little room, just enough and plenty, and checks that it stays in the room.
template <class To, class Text, class Convert, class From>
Text Converted(Convert convert, unsigned codePage, const From* from, std::size_t units) {
  const int length = static_cast<int>(units);
  const int size = convert(codePage, from, length, nullptr, 0);
  Text result;
  for (const int capacity : {size, 3 * length + 1, size - 1}) {
    // Wine cuts a surrogate pair at the end for which there is no room; it should fail.
    const bool cutsPair = capacity < size && !result.empty() && (result.back() & 0xFC00) == 0xDC00;
    if (capacity <= 0 || cutsPair) continue;
    std::vector<To> to(capacity + 1, '#');
    const int written = convert(codePage, from, length, to.data(), capacity);
    EXPECT_EQ(written, capacity < size ? 0 : size);
    EXPECT_EQ(to[capacity], '#');
    if (written) result.assign(to.begin(), to.begin() + written);
  }
  return result;
}

std::string ToBytes(const std::u16string& text, unsigned codePage = kCodePageUtf8) {
  return Converted<char, std::string>(WideToBytes, codePage, W(text).get(), text.size());
}

/// The code units, so that ill-formed ones can be seen.
std::u16string ToWide(const std::string& bytes, unsigned codePage = kCodePageUtf8) {
  const std::vector<char> exact(bytes.begin(), bytes.end());  // so that overruns are noticed
  return Converted<WChar, std::u16string>(BytesToWide, codePage, exact.data(), exact.size());
}

TEST(CodePage, EachIllFormedPartOfUtf8IsOneReplacement) {
  const std::pair<std::string, std::u16string> cases[] = {
      {"", u""},
      {"a\x80z\xC3(", u"a\xFFFDz\xFFFD("},
      {"\xC0\xAF\xFF\xFE", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"\xE2\x82z", u"\xFFFDz"},
      {"\xED\xA0\x80", u"\xFFFD\xFFFD\xFFFD"},
      {"\xF0\x80\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"\xF4\x90\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"\xF0\x9F\xE2\x82\xAC", u"\xFFFD\x20AC"},
      {"\xEF\xBB\xBFx", u"\xFEFFx"}};
  for (const auto& [utf8, wide] : cases) EXPECT_EQ(ToWide(utf8), wide) << utf8;
  EXPECT_EQ(ToBytes(u"\xDC00\xD800\xD800\xDC00"), "\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x90\x80\x80");
}

TEST(CodePage, TheSystemsOwnKeepsWhatItsUsersWrite) {
  EXPECT_EQ(ToBytes(u"plain 123", kCodePageSystem), "plain 123");
  EXPECT_EQ(ToWide(ToBytes(u"plain \xE9", kCodePageSystem), kCodePageSystem), u"plain \xE9");
}

// The reference conversions below go unit by unit or byte by byte, without blocks.

std::string ReferenceUtf8(const std::u16string& units) {
  const auto isHigh = [&](std::size_t i) { return i < units.size() && units[i] >> 10 == 0x36; };
  const auto isLow = [&](std::size_t i) { return i < units.size() && units[i] >> 10 == 0x37; };
  std::u16string paired = units;
  for (std::size_t i = 0; i < units.size(); ++i)
    if ((isHigh(i) && !isLow(i + 1)) || (isLow(i) && !(i > 0 && isHigh(i - 1)))) paired[i] = 0xFFFD;
  return Utf8(W(paired), paired.size());
}

std::u16string ReferenceUnits(const std::string& bytes) {
  std::u16string units;
  unsigned code = 0, low = 0x80, high = 0xBF;
  int needed = 0;
  for (const char c : bytes) {
    const unsigned byte = static_cast<unsigned char>(c);
    if (needed && (byte < low || byte > high)) {
      units += u'\xFFFD';
      needed = 0;
    }
    if (needed) {
      code = code << 6 | (byte & 0x3F);
      low = 0x80, high = 0xBF;
      if (--needed) continue;
    } else {
      needed = byte < 0xC2 || byte > 0xF4 ? 0 : byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
      low = byte == 0xE0 ? 0xA0 : byte == 0xF0 ? 0x90 : 0x80;
      high = byte == 0xED ? 0x9F : byte == 0xF4 ? 0x8F : 0xBF;
      code = needed ? byte & (0x3F >> needed) : byte < 0x80 ? byte : 0xFFFD;
      if (needed) continue;
    }
    if (code >= 0x10000) units += static_cast<char16_t>(0xD7C0 + (code >> 10));
    units += static_cast<char16_t>(code < 0x10000 ? code : 0xDC00 | (code & 0x3FF));
  }
  if (needed) units += u'\xFFFD';
  return units;
}

/// Texts made of runs, so that every path for a block is taken, and every change between paths.
template <class Text, std::size_t N>
Text RandomText(std::mt19937& random, const Text (&pieces)[N]) {
  Text text;
  for (std::size_t runs = random() % 8; runs > 0; --runs) {
    const Text& piece = pieces[random() % N];
    for (std::size_t times = 1 + (random() % 3 == 0 ? random() % 40 : 0); times > 0; --times)
      text += piece;
  }
  return text;
}

TEST(CodePage, EncodesAndDecodesRandomTextsLikeTheReferences) {
  const std::u16string wide[] = {u"a",      u"\x7F",         u"\x80",         u"\x7FF",
                                 u"\x800",  u"\x4E2D",       u"\xD7FF",       u"\xE000",
                                 u"\xFFFF", u"\xD83D\xDE00", u"\xDBFF\xDFFF", u"\xD800",
                                 u"\xDFFF", u"\0"s,          u"\xD800\xDC00", u"\x430"};
  const std::string narrow[] = {
      "a",        "\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80", "\xD0\xB0", "\x80",
      "\xC0",     "\xC3",     "\xE0",         "\xE0\xA0",         "\xED\xA0", "\xE4\xB8",
      "\xF0\x9F", "\xF0\x8F", "\xF0\x9F\x98", "\xF4\x8F\xBF\xBF", "\xF4\x90", "\xEF\xBF\xBF",
      "\xFF",     "\0"s,      "\xBF",         "\xED\x9F\xBF",     "\xF4",     "\xF5"};
  std::mt19937 random(1);
  for (int round = 0; round < 5000 && !testing::Test::HasFailure(); ++round) {
    const std::u16string text = RandomText(random, wide);
    EXPECT_EQ(ToBytes(text), ReferenceUtf8(text));
    const std::string bytes = RandomText(random, narrow);
    EXPECT_EQ(ToWide(bytes), ReferenceUnits(bytes));
  }
}

}  // namespace vosmere::test::code_page
