#include "vosmere/text/md5_digest.h"

#include <cstdio>

#include "tests/support/test.h"
#include "vosmere/text/md5_text.h"

namespace vosmere::test::md5 {

std::string Hex(const std::string& digest) {
  char hex[33];
  for (int i = 0; i < 16; ++i)
    std::snprintf(hex + 2 * i, 3, "%02x", static_cast<unsigned char>(digest[i]));
  return hex;
}

/// Sixteen bytes.
std::string Md5(const std::string& text, int length) {
  char digest[] = "0123456789abcdefXY";
  CMD5Digest().MD5String(reinterpret_cast<unsigned char*>(digest), text.c_str(), length);
  EXPECT_EQ(std::string(digest + 16, 2), std::string("\0Y", 2));
  return {digest, 16};
}

struct Md5InPieces : CMD5Digest {
  void Add(const std::string& text) {
    Update(reinterpret_cast<const unsigned char*>(text.data()), static_cast<unsigned>(text.size()));
  }
  std::string Finish() {
    char digest[16];
    Final(reinterpret_cast<unsigned char*>(digest));
    return {digest, 16};
  }
  /// Counts bits as if they had come already; they are not in the digest.
  void CountBits(ULONG bits) { count_[0] += bits; }
};

std::string Bytes(std::size_t count) {
  std::string bytes(count, 0);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 7);
  return bytes;
}

TEST(Md5Digest, DigestsEveryLengthOfTwoBlocksAndTextsUpToTheirZero) {
  Md5InPieces all;
  for (int length = 0; length <= 130; ++length) all.Add(Md5(Bytes(130), length));
  EXPECT_EQ(Hex(all.Finish()), "c40b32bd9ac12fec37c1626effd289ed");
  EXPECT_EQ(Hex(Md5(std::string("abc\0d", 5), -1)), "900150983cd24fb0d6963f7d28e17f72");
}

TEST(Md5Digest, PiecesGiveTheDigestOfTheWholeOnceForEachInit) {
  const std::string text = Bytes(1000), whole = Md5(text, 1000);
  Md5InPieces md5;
  for (const std::size_t size : {1, 55, 56, 57, 63, 64, 65, 127, 128, 999}) {
    md5.Init();
    for (std::size_t i = 0; i < text.size(); i += size) md5.Add(text.substr(i, size));
    Md5InPieces copy = md5;
    EXPECT_EQ(md5.Finish(), whole) << size;
    EXPECT_EQ(copy.Finish(), whole) << "a copy carries on from where it was made";
  }
  EXPECT_NE(md5.Finish(), Md5("", 0)) << "Final clears the state, but does not start anew";
}

TEST(Md5Digest, CountsPastFourBillionBits) {
  Md5InPieces md5;
  md5.CountBits(0u - 512);
  md5.Add(Bytes(100));
  EXPECT_EQ(Hex(md5.Finish()), "ac557a687892b2d75af9753fcf1e4406");
}

using TextDigest = bool(const WChar*, WChar*);

std::string Digested(TextDigest* digest, const Wide& text) {
  WChar hex[33];
  EXPECT_TRUE(digest(text, hex));
  return Utf8(hex);
}

TEST(EncodingTool, DigestsUtf8InEitherCaseAndPairsWholeWhereverTheyLie) {
  TextDigest* const upper = CEncodingTool::GetWideCharMD5;
  TextDigest* const lower = CEncodingTool::GetWideCharLowerMD5;
  EXPECT_EQ(Digested(upper, nullptr), "D41D8CD98F00B204E9800998ECF8427E");
  EXPECT_EQ(Digested(lower, W("é")), "66ddcd97cfdeabb2f6fb8a999b4bc76f");
  EXPECT_EQ(Digested(lower, W(u"abc\0def")), "900150983cd24fb0d6963f7d28e17f72");
  for (const int before : {0, 511, 1022}) {
    std::string text(before, 'x');
    for (int i = 0; i < 1000; ++i) text += "😀";
    EXPECT_EQ(Digested(lower, W(text)), Hex(Md5(text, -1))) << before;
  }
}

}  // namespace vosmere::test::md5
