#include "vosmere/text/md5_text.h"

#include "tests/support/test.h"

namespace vosmere::test::md5_text {

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
  EXPECT_EQ(Upper(nullptr), Upper(W("")));
  EXPECT_EQ(Lower(W("é")), "66ddcd97cfdeabb2f6fb8a999b4bc76f");
  EXPECT_EQ(Lower(W(u"abc\0def")), "900150983cd24fb0d6963f7d28e17f72") << "ends at its zero";
}

TEST(EncodingTool, DigestsPairsWholeWhereverTheyLie) {
  const struct {
    int before;
    const char* digest;
  } cases[] = {{0, "0323a7aed543ab02808788773b7e231c"},
               {511, "3ca4c9787965a859301b57120897485a"},
               {1022, "c2625d3918553eaf9ec95a3f429a4c35"}};
  for (const auto& c : cases) {
    std::u16string text(c.before, u'x');
    for (int i = 0; i < 1000; ++i) text += u"\xD83D\xDE00";
    EXPECT_EQ(Lower(W(text)), c.digest) << c.before;
  }
}

}  // namespace vosmere::test::md5_text
