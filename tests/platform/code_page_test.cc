#include "vosmere/platform/code_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

std::string ToBytes(unsigned codePage, const Wide& text) {
  const int length = static_cast<int>(text.size());
  std::string bytes(WideToBytes(codePage, text.get(), length, nullptr, 0), '#');
  const int written =
      WideToBytes(codePage, text.get(), length, bytes.data(), static_cast<int>(bytes.size()));
  EXPECT_EQ(written, static_cast<int>(bytes.size()));
  return bytes;
}

/// The units, so that what is ill-formed shows.
std::u16string ToWide(unsigned codePage, const std::string& bytes) {
  const int length = static_cast<int>(bytes.size());
  std::vector<WChar> units(BytesToWide(codePage, bytes.data(), length, nullptr, 0));
  const int written =
      BytesToWide(codePage, bytes.data(), length, units.data(), static_cast<int>(units.size()));
  EXPECT_EQ(written, static_cast<int>(units.size()));
  return {units.begin(), units.end()};
}

TEST(CodePage, Utf8GoesBothWays) {
  using namespace std::string_literals;
  const struct {
    std::u16string wide;
    std::string utf8;
  } cases[] = {{u"", ""},
               {u"plain ASCII, longer than any register is wide",
                "plain ASCII, longer than any register is wide"},
               {u"a\0b"s, "a\0b"s},
               {u"\x7F\x80\x7FF\x800\xFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
               {u"\xD800\xDC00\xDBFF\xDFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
               {u"\xFEFFx", "\xEF\xBB\xBFx"}};
  for (const auto& c : cases) {
    EXPECT_EQ(ToBytes(kCodePageUtf8, W(c.wide)), c.utf8);
    EXPECT_EQ(ToWide(kCodePageUtf8, c.utf8), c.wide);
  }
}

TEST(CodePage, UnpairedSurrogatesBecomeReplacements) {
  const std::string bad = "\xEF\xBF\xBD";
  EXPECT_EQ(ToBytes(kCodePageUtf8, W(u"a\xD800")), "a" + bad);
  EXPECT_EQ(ToBytes(kCodePageUtf8, W(u"\xDC00 b")), bad + " b");
  EXPECT_EQ(ToBytes(kCodePageUtf8, W(u"\xD800\xD800\xDC00")), bad + "\xF0\x90\x80\x80");
  EXPECT_EQ(ToBytes(kCodePageUtf8, W(u"\xDC00\xD800")), bad + bad);
}

TEST(CodePage, EachIllFormedPartBecomesOneReplacement) {
  const struct {
    const char* bytes;
    std::u16string wide;
  } cases[] = {{"a\x80z", u"a\xFFFDz"},
               {"\xC3", u"\xFFFD"},
               {"\xC3(", u"\xFFFD("},
               {"\xC0\xAF", u"\xFFFD\xFFFD"},
               {"\xE2\x82", u"\xFFFD"},
               {"\xE2\x82z", u"\xFFFDz"},
               {"\xED\xA0\x80", u"\xFFFD\xFFFD\xFFFD"},
               {"\xF0\x9F\x98", u"\xFFFD"},
               {"\xF0\x80\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
               {"\xF4\x90\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
               {"\xF0\x9F\xE2\x82\xAC", u"\xFFFD\x20AC"},
               {"\xFF\xFE", u"\xFFFD\xFFFD"}};
  for (const auto& c : cases)
    EXPECT_EQ(ToWide(kCodePageUtf8, c.bytes), c.wide) << testing::PrintToString(c.bytes);
}

TEST(CodePage, WritesNothingPastTheCapacityAndNoTerminator) {
  char bytes[] = "######";
  EXPECT_EQ(WideToBytes(kCodePageUtf8, W("abc"), 3, bytes, 2), 0);
  EXPECT_EQ(bytes[2], '#');
  EXPECT_EQ(WideToBytes(kCodePageUtf8, W("é€"), 2, bytes, 4), 0);
  EXPECT_EQ(bytes[4], '#');
  EXPECT_EQ(WideToBytes(kCodePageUtf8, W("é€"), 2, bytes, 6), 5);
  EXPECT_EQ(bytes[5], '#');
  WChar units[] = {'#', '#', '#', 0};
  EXPECT_EQ(BytesToWide(kCodePageUtf8, "abc", 3, units, 2), 0);
  EXPECT_EQ(units[2], '#');
  EXPECT_EQ(BytesToWide(kCodePageUtf8, "ab", 2, units, 3), 2);
  EXPECT_EQ(units[2], '#');
}

TEST(CodePage, TheSystemsOwnKeepsAscii) {
  EXPECT_EQ(ToBytes(kCodePageSystem, W("plain 123")), "plain 123");
  EXPECT_EQ(ToWide(kCodePageSystem, "plain 123"), u"plain 123");
  EXPECT_FALSE(ToBytes(kCodePageSystem, W("字")).empty());
}

}  // namespace
}  // namespace vosmere::test
