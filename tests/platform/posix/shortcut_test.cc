#include "vosmere/platform/posix/shortcut.h"

#include "tests/support/order.h"
#include "tests/support/test.h"

namespace vosmere::test::shortcut {

TEST(Shortcut, ReadsAnyEncodingAndLayout) {
  const std::u16string wide = u"[InternetShortcut]\nURL=http://ж.example/";
  std::string bigEndian = Utf16(u'\xFEFF' + wide);
  for (std::size_t i = 0; i < bigEndian.size(); i += 2) std::swap(bigEndian[i], bigEndian[i + 1]);
  auto cases = TestTable("shortcuts.txt");
  const std::string plain = "[InternetShortcut]\r\nURL=a:plain\r\n";
  cases.push_back({Utf16(u'\xFEFF' + wide), "http://ж.example/"});
  cases.push_back({bigEndian, "http://ж.example/"});
  cases.push_back({"[InternetShortcut]\nURL=http://caf\xE9.example/", "http://café.example/"});
  cases.push_back({plain + "[InternetShortcut.W]\r\nURL=a:+BDY\x80", "a:plain"});
  for (const auto& row : cases) EXPECT_EQ(Utf8(W(ShortcutAddressIn(row[0]))), row[1]) << row[0];
}

}  // namespace vosmere::test::shortcut
