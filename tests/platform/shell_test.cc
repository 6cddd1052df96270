#include "vosmere/platform/internal/shell.h"

#include <utility>

#include "tests/support/test.h"

namespace vosmere::test::shell {

std::string AddressIn(const std::string& shortcut) {
  const TempFolder folder;
  WriteBytes(folder / "page.url", shortcut);
  const ShellAllocator allocator;
  WChar* const address = ShortcutAddress(W(folder / "page.url"));
  const std::string text = Utf8(address);
  allocator.Free(address);
  return text;
}

TEST(Shell, ReadsTheAddressOfAShortcutOnAnyThread) {
  const std::pair<std::string, const char*> cases[] = {
      {"[DEFAULT]\r\nBASEURL=http://b/\r\n[internetshortcut]\r\nX=1\r\nurl=http://n/?a=1&b=2\r\n",
       "http://n/?a=1&b=2"},
      {"", "(null)"},
      {"[InternetShortcut]\r\n", "(null)"},
      {"[Other]\r\nURL=http://a/\r\n", "(null)"},
      {"http://a/\r\n", "(null)"},
      {"URL=http://a/\r\n", "(null)"}};
  const auto check = [&](int) {
    for (const auto& [shortcut, address] : cases) EXPECT_EQ(AddressIn(shortcut), address);
  };
  check(0);
  AtOnce(1, check);
  EXPECT_EQ(ShortcutAddress(W("/no such/page.url")), nullptr);
}

}  // namespace vosmere::test::shell
