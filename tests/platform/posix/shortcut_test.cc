#include "vosmere/platform/posix/shortcut.h"

#include <gtest/gtest.h>

#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

std::string Address(const std::string& shortcut) {
  return Utf8(W(ShortcutAddressIn(shortcut)));
}

std::string Utf16(const std::u16string& text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : u'\xFEFF' + text) {
    const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
    bytes += bigEndian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

TEST(Shortcut, ReadsEveryEncoding) {
  const std::u16string wide = u"[InternetShortcut]\nURL=http://ж.example/";
  EXPECT_EQ(Address(Utf16(wide, false)), "http://ж.example/");
  EXPECT_EQ(Address(Utf16(wide, true)), "http://ж.example/");
  EXPECT_EQ(Address("\xEF\xBB\xBF[InternetShortcut]\nURL=http://ж.example/"), "http://ж.example/");
  EXPECT_EQ(Address("[InternetShortcut]\nURL=http://ж.example/"), "http://ж.example/");
  EXPECT_EQ(Address("[InternetShortcut]\nURL=http://caf\xE9.example/"), "http://café.example/");
}

TEST(Shortcut, TheShadowSaysWhatEightBitsCannot) {
  const struct {
    const char* shadow;
    const char* address;
  } cases[] = {{"http://+BDY-.example/", "http://ж.example/"},
               {"http://a.example/?x=1+-2", "http://a.example/?x=1+2"},
               {"", "http://plain.example/"},
               {"http://+BDY\x80", "http://plain.example/"}};
  for (const auto& c : cases)
    for (const bool first : {true, false}) {
      const std::string shadow = std::string("[InternetShortcut.W]\r\nURL=") + c.shadow + "\r\n";
      const std::string plain = "[InternetShortcut]\r\nURL=http://plain.example/\r\n";
      EXPECT_EQ(Address(first ? shadow + plain : plain + shadow), c.address);
    }
}

TEST(Shortcut, ReadsAnyLayout) {
  const struct {
    const char* shortcut;
    const char* address;
  } cases[] = {
      {"[InternetShortcut]\rURL=a:1\rX=2", "a:1"},
      {"\n\n [INTERNETSHORTCUT] \n\tUrl = a:1 \n", "a:1"},
      {"[InternetShortcut]\nURL=\"a:1\"\nURL=a:2", "a:1"},
      {"[InternetShortcut]\nURL=a=b\n", "a=b"},
      {"[InternetShortcut\nURL=a:1", "a:1"},
      {"[InternetShortcut]\n;URL=a:1\nMYURL=a:2\nURL", ""},
      {"[InternetShortcut]\n[x]\nURL=a:1", ""},
      {"http://a.example/", "http://a.example/"},
      {"\r\n  mailto:a@b.example  \r\n", "mailto:a@b.example"},
      {"http://a.example/\nand more", ""},
      {"C:\\a file", ""},
      {"just words", ""},
      {"URL=a:1", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Address(c.shortcut), c.address) << c.shortcut;
}

}  // namespace
}  // namespace vosmere::test
