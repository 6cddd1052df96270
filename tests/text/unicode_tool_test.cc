#include "vosmere/text/unicode_tool.h"

#include "tests/support/test.h"
#include "vosmere/platform/trace.h"

namespace vosmere::test::unicode_tool {

using namespace std::string_literals;

using ToBytes = bool (*)(const WChar*, char**, int*);

/// What a conversion hands out, its terminator checked; "(false)" when it fails.
std::string Bytes(ToBytes convert, const WChar* source) {
  char* text = nullptr;
  int length = -1;
  if (!convert(source, &text, &length)) return "(false)";
  EXPECT_EQ(text[length], 0);
  const std::string bytes(text, length);
  CUnicodeTool::DeleteBuffer(text);
  return bytes;
}

/// The units, so that what is ill-formed shows; "(false)" when the conversion fails.
std::u16string Units(const std::string& bytes, int length) {
  BSTR text = nullptr;
  if (!CUnicodeTool::UTF8GetBSTR(&text, bytes.c_str(), length)) return u"(false)";
  const OwnedBstr owned(text);
  EXPECT_EQ(text[owned.size()], 0);
  return {text, text + owned.size()};
}

TEST(UnicodeTool, ConvertsSystemStringsByTheirLength) {
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, OwnedBstr(W(u"a\0\xE9"s)).get()), "a\0\xC3\xA9"s);
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, OwnedBstr(W("")).get()), "");
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, nullptr), "");
}

TEST(UnicodeTool, ConvertsPlainTextsUpToTheirZero) {
  for (const ToBytes convert : {CUnicodeTool::TCHARGetUTF8, CUnicodeTool::TCHARGetASCII}) {
    EXPECT_EQ(Bytes(convert, W(u"ab\0c"s)), "ab");
    EXPECT_EQ(Bytes(convert, nullptr), "");
    for (const int length : {0, 2048, 2049, 100000})
      EXPECT_EQ(Bytes(convert, Repeated(length)), std::string(length, 'x'));
  }
}

TEST(UnicodeTool, MakesSystemStringsOfUtf8) {
  EXPECT_EQ(Units("a\xC3\xA9\xF0\x9F\x98\x80", 7), u"a\x00E9\xD83D\xDE00");
  EXPECT_EQ(Units("a\0b"s, 3), u"a\0b"s);
  EXPECT_EQ(Units("a\0b"s, 0), u"a") << "a length of 0 stops at the zero byte";
  EXPECT_EQ(Units("abc", 2), u"ab");
  for (const int length : {2048, 2049, 100000})
    EXPECT_EQ(Units(std::string(length, 'x'), length), std::u16string(length, u'x'));
  EXPECT_EQ(Units("", 0), u"(false)");
  EXPECT_EQ(Units("abc", -1), u"(false)");
  BSTR text = nullptr;
  EXPECT_FALSE(CUnicodeTool::UTF8GetBSTR(&text, nullptr, 3));
}

TEST(UnicodeTool, WithoutMemoryOnlyOneConversionTouchesItsResult) {
  for (const std::size_t size : {4, 100000}) {
    const OwnedBstr source(Repeated(size));
    char untouched;
    char *bstr = &untouched, *utf8 = &untouched, *ascii = &untouched;
    int length = 7;
    {
      const FailingMemory memory(0);
      EXPECT_FALSE(CUnicodeTool::BSTRGetUTF8(source.get(), &bstr, &length));
      EXPECT_FALSE(CUnicodeTool::TCHARGetASCII(source.get(), &ascii, &length));
      EXPECT_EQ(length, 7);
      EXPECT_FALSE(CUnicodeTool::TCHARGetUTF8(source.get(), &utf8, &length));
    }
    EXPECT_EQ(bstr, &untouched);
    EXPECT_EQ(ascii, &untouched);
    EXPECT_EQ(utf8, nullptr);
  }
}

TEST(UnicodeTool, WithoutMemoryASystemStringFailsWithATrace) {
  if (!kSystemStringsFail) GTEST_SKIP() << "system strings come from the system";
  static std::string traced;
  traced.reserve(100);
  SetTraceHook([](const char* line) { traced = line; });
  const std::string source(100000, 'x');
  for (const int length : {10, 100000}) {
    const auto make = [&] {
      BSTR text = nullptr;
      CUnicodeTool::UTF8GetBSTR(&text, source.data(), length);
      return text;
    };
    AtEachFailure(make, [](BSTR text, bool failed) {
      EXPECT_EQ(text == nullptr, failed);
      SysFreeString(text);
    });
  }
  SetTraceHook(nullptr);
  EXPECT_EQ(traced, "Error=0X0000000E\n");
}

}  // namespace vosmere::test::unicode_tool
