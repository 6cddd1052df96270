#include "vosmere/text/encoding_tool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/wide.h"
#include "vosmere/text/md5_digest.h"

namespace vosmere::test {
namespace {

std::string Upper(const Wide& text) {
  WChar digest[33];
  EXPECT_TRUE(CEncodingTool::GetWideCharMD5(text, digest));
  return Utf8(digest);
}

std::string Lower(const Wide& text) {
  WChar digest[33];
  EXPECT_TRUE(CEncodingTool::GetWideCharLowerMD5(text, digest));
  return Utf8(digest);
}

TEST(EncodingTool, DigestsUtf8InEitherCase) {
  EXPECT_EQ(Upper(W("")), "D41D8CD98F00B204E9800998ECF8427E");
  EXPECT_EQ(Lower(W("")), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(Upper(nullptr), Upper(W("")));
  EXPECT_EQ(Lower(W("abc")), "900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(Lower(W("é")), "66ddcd97cfdeabb2f6fb8a999b4bc76f");
  EXPECT_EQ(Lower(W(u"abc\0def")), Lower(W("abc"))) << "the text ends at its zero";
}

TEST(EncodingTool, DigestsLongTextsWhole) {
  for (const std::size_t before : {0, 510, 511, 512, 1023, 2000}) {
    std::u16string text(before, u'x');
    for (int i = 0; i < 1000; ++i) text += u"\xD83D\xDE00";  // a pair may lie across any border
    const Wide wide = W(text);
    const std::string utf8 = Utf8(wide);
    unsigned char digest[17];
    CMD5Digest().MD5String(digest, utf8.data(), static_cast<int>(utf8.size()));
    std::string expected;
    for (int i = 0; i < 16; ++i) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02x", digest[i]);
      expected += digits;
    }
    EXPECT_EQ(Lower(wide), expected) << before;
  }
}

}  // namespace
}  // namespace vosmere::test
