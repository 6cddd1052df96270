#include "vosmere/platform/registry.h"

#include <gtest/gtest.h>

#include "tests/support/user_registry.h"

namespace vosmere::test {
namespace {

/// "(none)" when there is no such value.
std::string Read(HKEY key, const std::string& name) {
  ULONG size = 0;
  if (!ReadKeyValue(key, W(name), nullptr, &size)) return "(none)";
  std::string bytes(size + 1, '?');
  size = static_cast<ULONG>(bytes.size());
  if (!ReadKeyValue(key, W(name), bytes.data(), &size)) return "(not read)";
  return bytes.substr(0, size);
}

TEST(Registry, ReadsValuesOfKeysAndSubkeysWithoutRegardToCase) {
  UserRegistry registry;
  const std::string bytes("\0\xFForder\r\n", 9);
  registry.Set("Sub\\Größe", "Order", bytes);
  const HKEY top = OpenUserKey(registry.Key(""));
  const HKEY sub = OpenSubKey(top, W("SUB\\GRößE"));
  EXPECT_EQ(Read(sub, "order"), bytes);
  EXPECT_EQ(Read(sub, "other"), "(none)");
  EXPECT_EQ(Read(top, "order"), "(none)");
  EXPECT_EQ(OpenSubKey(top, W("none")), nullptr);
  EXPECT_EQ(OpenSubKey(nullptr, W("Sub")), nullptr) << "not a key of the current user";
  EXPECT_EQ(OpenUserKey(registry.Key("Su")), nullptr);
  CloseKey(sub);
  CloseKey(top);
  CloseKey(nullptr);
}

TEST(Registry, AValueLargerThanTheRoomIsNotRead) {
  UserRegistry registry;
  registry.Set("", "Order", "abc");
  const HKEY key = OpenUserKey(registry.Key(""));
  char bytes[3];
  ULONG size = 2;
  EXPECT_FALSE(ReadKeyValue(key, W("Order"), bytes, &size));
  size = 3;
  EXPECT_TRUE(ReadKeyValue(key, W("Order"), bytes, &size));
  EXPECT_EQ(size, 3u);
  EXPECT_FALSE(ReadKeyValue(nullptr, W("Order"), bytes, &size));
  CloseKey(key);
}

}  // namespace
}  // namespace vosmere::test
