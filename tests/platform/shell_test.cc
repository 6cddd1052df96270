#include "vosmere/platform/shell.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "vosmere/platform/system_version.h"

namespace vosmere::test {
namespace {

std::string AddressIn(const std::string& shortcut) {
  const TempFolder folder;
  WriteBytes(folder / "page.url", shortcut);
  const ShellAllocator allocator;
  WChar* const address = ShortcutAddress(W(folder / "page.url"));
  const std::string text = Utf8(address);
  allocator.Free(address);
  return text;
}

TEST(Shell, ReadsTheAddressOfAShortcut) {
  EXPECT_EQ(AddressIn("[InternetShortcut]\r\nURL=http://news.example/?a=1&b=2\r\nIconIndex=1\r\n"),
            "http://news.example/?a=1&b=2");
  EXPECT_EQ(AddressIn("[DEFAULT]\r\nBASEURL=http://base.example/\r\n[internetshortcut]\r\n"
                      "Modified=00\r\nurl=mailto:a@b.example"),
            "mailto:a@b.example");
}

TEST(Shell, AnyThreadCanAsk) {
  std::string address;
  RunOnSmallStack(1 << 20, [&] { address = AddressIn("[InternetShortcut]\r\nURL=http://a/"); });
  EXPECT_EQ(address, "http://a/");
}

TEST(Shell, WhatHoldsNoAddressGivesNull) {
  for (const char* const shortcut : {"", "[InternetShortcut]\r\n", "[Other]\r\nURL=http://a/\r\n"})
    EXPECT_EQ(AddressIn(shortcut), "(null)") << shortcut;
  const TempFolder folder;
  EXPECT_EQ(ShortcutAddress(W(folder / "none.url")), nullptr);
  EXPECT_EQ(ShortcutAddress(W(folder / ".")), nullptr);
}

TEST(Shell, TheSystemIsAPresentDayOne) {
  EXPECT_TRUE(GetSystemVersion().isNt);
  EXPECT_GE(GetSystemVersion().major, 6u);
}

}  // namespace
}  // namespace vosmere::test
