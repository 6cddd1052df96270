#include "vosmere/platform/posix/shortcut.h"

#include "tests/support/order.h"
#include "tests/support/test.h"

namespace vosmere::test::shortcut {

TEST(Shortcut, ReadsAnyEncodingAndLayout) {
  const std::u16string wide = u"[InternetShortcut]\nURL=http://ж.example/";
  std::string bigEndian = Utf16(u'\xFEFF' + wide);
  for (std::size_t i = 0; i < bigEndian.size(); i += 2) std::swap(bigEndian[i], bigEndian[i + 1]);
  const std::string plain = "[InternetShortcut]\r\nURL=a:plain\r\n";
  const std::string shadow = "[InternetShortcut.W]\r\nURL=";
  const struct {
    std::string shortcut;
    const char* address;
  } cases[] = {
      {Utf16(u'\xFEFF' + wide), "http://ж.example/"},
      {bigEndian, "http://ж.example/"},
      {"\xEF\xBB\xBF[InternetShortcut]\nURL=http://ж.example/", "http://ж.example/"},
      {"[InternetShortcut]\nURL=http://ж.example/", "http://ж.example/"},
      {"[InternetShortcut]\nURL=http://caf\xE9.example/", "http://café.example/"},

      {shadow + "a:+BDY-.example\r\n" + plain, "a:ж.example"},
      {plain + shadow + "a:?x=1+-2", "a:?x=1+2"},
      {plain + shadow, "a:plain"},
      {plain + shadow + "a:+BDY\x80", "a:plain"},

      {"[InternetShortcut]\rURL=a:1\rX=2", "a:1"},
      {"\n\n [INTERNETSHORTCUT] \n\tUrl = a:1 \n", "a:1"},
      {"[InternetShortcut]\nURL=\"a:1\"\nURL=a:2", "a:1"},
      {"[InternetShortcut\nURL=a=b\n", "a=b"},
      {"[InternetShortcut]\n;URL=a:1\nMYURL=a:2\nURL", ""},
      {"[InternetShortcut]\n[x]\nURL=a:1", ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Utf8(W(ShortcutAddressIn(c.shortcut))), c.address) << c.shortcut;
}

}  // namespace vosmere::test::shortcut
