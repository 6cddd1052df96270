#include "vosmere/text/md5_digest.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace vosmere::test {
namespace {

std::string Hex(const unsigned char* digest) {
  char hex[33];
  for (int i = 0; i < 16; ++i) std::snprintf(hex + 2 * i, 3, "%02x", digest[i]);
  return hex;
}

std::string Md5(const std::string& text, int length) {
  unsigned char digest[18] = {};
  digest[16] = digest[17] = 0xAA;
  CMD5Digest().MD5String(digest, text.c_str(), length);
  EXPECT_EQ(digest[16], 0);
  EXPECT_EQ(digest[17], 0xAA);
  return Hex(digest);
}

void Add(CMD5Digest& md5, const std::string& text) {
  md5.Update(reinterpret_cast<const unsigned char*>(text.data()),
             static_cast<unsigned>(text.size()));
}

std::string Finish(CMD5Digest& md5) {
  unsigned char digest[16];
  md5.Final(digest);
  return Hex(digest);
}

TEST(Md5Digest, DigestsTheSuiteOfTheStandard) {
  const struct {
    const char *text, *digest;
  } cases[] = {{"", "d41d8cd98f00b204e9800998ecf8427e"},
               {"a", "0cc175b9c0f1b6a831c399e269772661"},
               {"abc", "900150983cd24fb0d6963f7d28e17f72"},
               {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
               {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
               {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
                "d174ab98d277d9f5a5611c2c9f419d9f"},
               {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
                "57edf4a22be3c955ac49da2e2107b67a"}};
  for (const auto& c : cases) EXPECT_EQ(Md5(c.text, -1), c.digest) << c.text;
}

TEST(Md5Digest, ALengthCountsZeroBytesToo) {
  using namespace std::string_literals;
  EXPECT_EQ(Md5("abc\0def"s, -1), Md5("abc", 3));
  EXPECT_NE(Md5("abc\0def"s, 7), Md5("abc", 3));
  EXPECT_EQ(Md5("abc", 0), Md5("", -1));
}

TEST(Md5Digest, PiecesGiveTheDigestOfTheWhole) {
  std::string text;
  for (int i = 0; i < 1000; ++i) text += static_cast<char>(i * 7);
  const std::string expected = Md5(text, 1000);
  for (const std::size_t size : {1, 55, 56, 57, 63, 64, 65, 127, 128, 999}) {
    CMD5Digest md5;
    for (std::size_t i = 0; i < text.size(); i += size) Add(md5, text.substr(i, size));
    CMD5Digest copy = md5;
    EXPECT_EQ(Finish(md5), expected) << size;
    EXPECT_EQ(Finish(copy), expected) << "a copy carries on from where it was made";
  }
}

TEST(Md5Digest, CountsPastFourBillionBits) {
  CMD5Digest md5;
  const std::string part(1 << 20, '\0');
  for (int i = 0; i < 513; ++i) Add(md5, part);
  EXPECT_EQ(Finish(md5), "f3a8799d64129a6fd8a5aa56f199ac54");
}

TEST(Md5Digest, AnotherMessageNeedsInit) {
  CMD5Digest md5;
  Add(md5, "abc");
  Finish(md5);
  CMD5Digest cleared = md5;
  EXPECT_NE(Finish(cleared), Md5("", 0)) << "Final clears, it does not begin anew";
  md5.Init();
  Add(md5, "abc");
  EXPECT_EQ(Finish(md5), Md5("abc", 3));
}

}  // namespace
}  // namespace vosmere::test
