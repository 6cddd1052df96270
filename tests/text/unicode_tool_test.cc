#include "vosmere/text/unicode_tool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/failing_memory.h"
#include "tests/support/wide.h"
#include "vosmere/base/trace.h"
#include "vosmere/platform/code_page.h"

namespace vosmere::test {
namespace {

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
std::u16string Units(const std::string& bytes) {
  return Units(bytes, static_cast<int>(bytes.size()));
}

TEST(UnicodeTool, ConvertsSystemStringsByTheirLength) {
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, OwnedBstr(W(u"a\0\xE9"s)).get()), "a\0\xC3\xA9"s);
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, OwnedBstr(W("")).get()), "");
  EXPECT_EQ(Bytes(CUnicodeTool::BSTRGetUTF8, nullptr), "");
}

TEST(UnicodeTool, ConvertsPlainTextsUpToTheirZero) {
  for (const ToBytes convert : {CUnicodeTool::TCHARGetUTF8, CUnicodeTool::TCHARGetASCII}) {
    EXPECT_EQ(Bytes(convert, W(u"ab\0c"s)), "ab");
    EXPECT_EQ(Bytes(convert, W("")), "");
    EXPECT_EQ(Bytes(convert, nullptr), "");
    EXPECT_EQ(Bytes(convert, Repeated(100000)), std::string(100000, 'x'));
  }
}

TEST(UnicodeTool, WhatTheCodePageCannotRepresentIsReplaced) {
  const Wide text = W(u"a\x4E2D\xD83D\xDE00z");
  const std::string bytes = Bytes(CUnicodeTool::TCHARGetASCII, text);
  EXPECT_EQ(bytes.front(), 'a');
  EXPECT_EQ(bytes.back(), 'z');
  EXPECT_NE(bytes.find('?'), std::string::npos) << bytes;
}

TEST(UnicodeTool, MakesSystemStringsOfUtf8) {
  EXPECT_EQ(Units("a\xC3\xA9\xF0\x9F\x98\x80"), u"a\x00E9\xD83D\xDE00");
  EXPECT_EQ(Units("a\0b"s), u"a\0b"s);
  EXPECT_EQ(Units("a\0b"s, 0), u"a") << "a length of 0 stops at the zero byte";
  EXPECT_EQ(Units("abc", 2), u"ab");
  EXPECT_EQ(Units(std::string(100000, 'x')), std::u16string(100000, u'x'));
}

TEST(UnicodeTool, MakesNoSystemStringOfNothing) {
  EXPECT_EQ(Units("", 0), u"(false)");
  EXPECT_EQ(Units("abc", -1), u"(false)");
  BSTR text = nullptr;
  EXPECT_FALSE(CUnicodeTool::UTF8GetBSTR(&text, nullptr, 3));
  EXPECT_EQ(text, nullptr);
}

TEST(UnicodeTool, DeletesNull) {
  CUnicodeTool::DeleteBuffer(nullptr);
}

TEST(UnicodeTool, WithoutMemoryOnlyOneConversionTouchesItsResult) {
  const OwnedBstr shortText = Bstr("text");
  const OwnedBstr longText(Repeated(100000));
  for (const WChar* source : {shortText.get(), longText.get()}) {
    char untouched;
    char *bstr = &untouched, *utf8 = &untouched, *ascii = &untouched;
    int length = 7;
    {
      const FailingMemory memory(0);
      EXPECT_FALSE(CUnicodeTool::BSTRGetUTF8(source, &bstr, &length));
      EXPECT_FALSE(CUnicodeTool::TCHARGetASCII(source, &ascii, &length));
      EXPECT_EQ(length, 7);
      EXPECT_FALSE(CUnicodeTool::TCHARGetUTF8(source, &utf8, &length));
    }
    EXPECT_EQ(bstr, &untouched);
    EXPECT_EQ(ascii, &untouched);
    EXPECT_EQ(utf8, nullptr);
  }
}

char traced[64];

TEST(UnicodeTool, WithoutMemoryASystemStringFailsWithATrace) {
  if (!kSystemStringsFail) GTEST_SKIP() << "system strings come from the system";
  SetTraceHook([](const char* line) { std::strncpy(traced, line, sizeof traced - 1); });
  const std::string source(100000, 'x');
  BSTR text = nullptr;
  for (const int length : {10, 100000}) {
    const long before = LiveAllocations();
    bool failed = true;
    for (long successes = 0; failed; ++successes) {
      const FailingMemory memory(successes);
      failed = !CUnicodeTool::UTF8GetBSTR(&text, source.data(), length);
      EXPECT_EQ(failed, memory.Failed());
      EXPECT_EQ(text == nullptr, failed);
    }
    SysFreeString(std::exchange(text, nullptr));
    EXPECT_EQ(LiveAllocations(), before);
  }
  SetTraceHook(nullptr);
  EXPECT_STREQ(traced, "Error=0X0000000E\n");
}

// The references below take one step for one unit or byte and know nothing of blocks.

std::string ReferenceUtf8(std::u16string units) {
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

/// Texts of runs, so that every way through a block is met, and every change between them.
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

TEST(UnicodeTool, EncodesRandomTextsLikeTheReference) {
  const std::u16string pieces[] = {u"a",      u"\x7F",         u"\x80",         u"\x7FF",
                                   u"\x800",  u"\x4E2D",       u"\xD7FF",       u"\xE000",
                                   u"\xFFFF", u"\xD83D\xDE00", u"\xDBFF\xDFFF", u"\xD800",
                                   u"\xDFFF", u"\0"s,          u"\xD800\xDC00", u"\x430"};
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = RandomText(random, pieces);
    const Wide units = W(text);
    const int length = static_cast<int>(text.size());
    const std::string expected = ReferenceUtf8(text);
    const int size = static_cast<int>(expected.size());
    ASSERT_EQ(WideToBytes(kCodePageUtf8, units, length, nullptr, 0), size);
    for (const int capacity : {3 * length, size, size + 1, size - 1}) {
      if (capacity <= 0) continue;
      std::vector<char> bytes(capacity);
      const int written = WideToBytes(kCodePageUtf8, units, length, bytes.data(), capacity);
      ASSERT_EQ(written, capacity < size ? 0 : size);
      if (written) {
        ASSERT_EQ(std::string(bytes.data(), written), expected);
      }
    }
  }
}

TEST(UnicodeTool, DecodesRandomBytesLikeTheReference) {
  const std::string pieces[] = {
      "a",        "\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80", "\xD0\xB0", "\x80",
      "\xC0",     "\xC3",     "\xE0",         "\xE0\xA0",         "\xED\xA0", "\xE4\xB8",
      "\xF0\x9F", "\xF0\x8F", "\xF0\x9F\x98", "\xF4\x8F\xBF\xBF", "\xF4\x90", "\xEF\xBF\xBF",
      "\xFF",     "\0"s,      "\xBF",         "\xED\x9F\xBF",     "\xF4",     "\xF5"};
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    const std::string bytes = RandomText(random, pieces);
    const int length = static_cast<int>(bytes.size());
    const std::u16string expected = ReferenceUnits(bytes);
    const int size = static_cast<int>(expected.size());
    const std::vector<char> exact(bytes.begin(), bytes.end());
    ASSERT_EQ(BytesToWide(kCodePageUtf8, exact.data(), length, nullptr, 0), size);
    // Wine cuts a pair at the end that just does not fit, where it ought to fail.
    const bool endsInPair = size > 0 && expected.back() >> 11 == 0x1B;
    for (const int capacity : {length, size, size + 1, endsInPair ? size - 2 : size - 1}) {
      if (capacity <= 0) continue;
      std::vector<WChar> units(capacity);
      const int written = BytesToWide(kCodePageUtf8, exact.data(), length, units.data(), capacity);
      ASSERT_EQ(written, capacity < size ? 0 : size);
      if (written) {
        ASSERT_EQ(std::u16string(units.begin(), units.begin() + written), expected);
      }
    }
  }
}

}  // namespace
}  // namespace vosmere::test
