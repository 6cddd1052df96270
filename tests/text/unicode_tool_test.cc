#include "vosmere/text/unicode_tool.h"

#include <utility>

#include "tests/support/test.h"
#include "tests/support/traces.h"

namespace vosmere::test::unicode_tool {

using namespace std::string_literals;

using ToBytes = bool (*)(const WChar*, char**, int*);

/// The result of a conversion, with its terminator checked; "(false)" if it fails.
std::string Bytes(ToBytes convert, const WChar* source) {
  char* text = nullptr;
  int length = -1;
  if (!convert(source, &text, &length)) return "(false)";
  EXPECT_EQ(text[length], 0);
  const std::string bytes(text, length);
  CUnicodeTool::DeleteBuffer(text);
  return bytes;
}

/// The code units, so that ill-formed ones can be seen; "(false)" if the conversion fails.
std::u16string Units(const char* bytes, int length) {
  BSTR text = nullptr;
  if (!CUnicodeTool::UTF8GetBSTR(&text, bytes, length)) return u"(false)";
  const OwnedBstr owned(text);
  EXPECT_EQ(text[owned.size()], 0);
  return {text, text + owned.size()};
}

TEST(UnicodeTool, ConvertsSystemStringsByTheirLengthAndPlainTextsUpToTheirZero) {
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, OwnedBstr(W(u"a\0\xE9"s)).get()), "a\0\xC3\xA9"s);
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, OwnedBstr(W("")).get()), "");
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, nullptr), "");
  for (const ToBytes convert : {CUnicodeTool::TCHARGetUTF8, CUnicodeTool::TCHARGetASCII}) {
    EXPECT_EQ(Bytes(convert, W(u"ab\0c"s)), "ab");
    EXPECT_EQ(Bytes(convert, nullptr), "");
    for (const int length : {0, 2048, 2049, 100000})
      EXPECT_EQ(Bytes(convert, Repeated(length)), std::string(length, 'x'));
  }
}

TEST(UnicodeTool, MakesSystemStringsOfUtf8) {
  EXPECT_EQ(Units("a\xC3\xA9\xF0\x9F\x98\x80", 7), u"a\x00E9\xD83D\xDE00");
  EXPECT_EQ(Units("a\0b", 3), u"a\0b"s);
  EXPECT_EQ(Units("a\0b", 0), u"a") << "a length of 0 stops at the zero byte";
  EXPECT_EQ(Units("abc", 2), u"ab");
  for (const int length : {2048, 2049, 100000})
    EXPECT_EQ(Units(std::string(length, 'x').c_str(), length), std::u16string(length, u'x'));
  EXPECT_EQ(Units("", 0), u"(false)");
  EXPECT_EQ(Units("abc", -1), u"(false)");
  EXPECT_EQ(Units(nullptr, 3), u"(false)");
}

TEST(UnicodeTool, WithoutMemoryOnlyOneConversionTouchesItsResult) {
  const std::pair<ToBytes, bool> cases[] = {{CUnicodeTool::BSTRGetUTF8, false},
                                            {CUnicodeTool::TCHARGetASCII, false},
                                            {CUnicodeTool::TCHARGetUTF8, true}};
  for (const std::size_t size : {4, 100000})
    for (const auto& [convert, clears] : cases) {
      const OwnedBstr source(Repeated(size));
      char untouched, *text = &untouched;
      int length = 7;
      const FailingMemory memory(0);
      EXPECT_FALSE(convert(source.get(), &text, &length));
      EXPECT_EQ(text, clears ? nullptr : &untouched);
      EXPECT_EQ(length, 7);
    }
}

TEST(UnicodeTool, WithoutMemoryASystemStringFailsWithATrace) {
  if (!kSystemStringsFail) GTEST_SKIP() << "system strings come from the system";
  const std::string source(100000, 'x');
  for (const int length : {10, 100000})
    for (long successes = 0; successes < (length > 10 ? 2 : 1); ++successes) {
      BSTR text = nullptr;
      const Traces traces;
      {
        const FailingMemory memory(successes, Failures::kOne);
        EXPECT_FALSE(CUnicodeTool::UTF8GetBSTR(&text, source.data(), length));
      }
      EXPECT_THAT(traces.lines(), ElementsAre("Error=0X0000000E\n"));
    }
}

}  // namespace vosmere::test::unicode_tool
