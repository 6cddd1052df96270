#include "vosmere/platform/registry.h"

#include "tests/support/test.h"
#include "tests/support/user_registry.h"

namespace vosmere::test::registry {

/// "(none)" when there is no such value, or no room for it.
std::string Read(HKEY key, const std::string& name, ULONG room) {
  std::string bytes(room, '?');
  ULONG size = room;
  if (ReadKeyValue(key, W(name), bytes.data(), &size)) return bytes.substr(0, size);
  EXPECT_EQ(size, room);
  return "(none)";
}

TEST(Registry, ReadsValuesOfKeysAndSubkeysWithoutRegardToCase) {
  UserRegistry registry;
  const std::string bytes("\0\xFForder\r\n", 9);
  registry.Set("Sub\\Größe", "Order", bytes);
  const HKEY top = OpenUserKey(registry.Key(""));
  const HKEY sub = OpenSubKey(top, W("SUB\\GRößE"));
  EXPECT_EQ(Read(sub, "order", 9), bytes);
  EXPECT_EQ(Read(sub, "order", 8), "(none)");
  EXPECT_EQ(Read(sub, "other", 9), "(none)");
  EXPECT_EQ(Read(top, "order", 9), "(none)");
  EXPECT_EQ(Read(nullptr, "order", 9), "(none)");
  EXPECT_EQ(OpenSubKey(top, W("none")), nullptr);
  EXPECT_EQ(OpenSubKey(nullptr, W("Software")), nullptr);
  EXPECT_EQ(OpenUserKey(registry.Key("Su")), nullptr);
  EXPECT_FALSE(SetUserRegistry(W("")));
  for (const HKEY key : {sub, top}) CloseKey(key);

  const HKEY root = OpenUserKey(W(""));
  const HKEY below = OpenSubKey(root, registry.Key("Sub"));
  EXPECT_NE(below, nullptr);
  for (const HKEY key : {below, root}) CloseKey(key);
}

}  // namespace vosmere::test::registry
