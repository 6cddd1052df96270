#include "vosmere/platform/internal/shell.h"

#include "tests/support/platform.h"
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
  const std::string shortcut =
      "[DEFAULT]\r\nBASEURL=http://b/\r\n[internetshortcut]\r\nX=1\r\nurl=http://n/?a=1&b=2\r\n";
  EXPECT_EQ(AddressIn(shortcut), "http://n/?a=1&b=2");
  std::string address;
  RunOnSmallStack(1 << 20, [&] { address = AddressIn(shortcut); });
  EXPECT_EQ(address, "http://n/?a=1&b=2");
}

TEST(Shell, WhatHoldsNoAddressGivesNull) {
  for (const char* const shortcut : {"", "[InternetShortcut]\r\n", "[Other]\r\nURL=http://a/\r\n",
                                     "http://a/\r\n", "URL=http://a/\r\n"})
    EXPECT_EQ(AddressIn(shortcut), "(null)") << shortcut;
  EXPECT_EQ(ShortcutAddress(W("/no such/page.url")), nullptr);
}

}  // namespace vosmere::test::shell
