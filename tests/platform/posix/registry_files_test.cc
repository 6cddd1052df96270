// The files that are read as a user's registry on systems without one.
#include <hivex.h>

#include <algorithm>
#include <cstdlib>

#include "tests/support/order.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "vosmere/platform/internal/shell.h"
#include "vosmere/platform/registry.h"

namespace vosmere::test::registry_files {

const std::string kFolders =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

/// A value of the key `Sub\Key` in a file; "(none)" if it does not exist.
std::string ValueIn(const std::filesystem::path& file, const std::string& name = "V") {
  const Hooked<SetUserRegistry> none(nullptr);  // resets it at the end
  if (!SetUserRegistry(W(file))) return "(refused)";
  const HKEY key = OpenUserKey(W("sub\\kEY"));
  char bytes[4096];
  ULONG size = sizeof bytes;
  const bool read = ReadKeyValue(key, W(name), bytes, &size);
  CloseKey(key);
  return read ? std::string(bytes, size) : "(none)";
}

std::string Folder() {
  WChar path[kShellPathLimit];
  return FavoritesFolder(path) ? Utf8(path) : "(none)";
}

TEST(RegistryFiles, AreReadAsText) {
  const std::string head = "Windows Registry Editor Version 5.00\r\n\r\n";
  const std::string begin = head + "[HKEY_CURRENT_USER\\Sub\\Key]\r\n";
  const std::u16string wide(begin.begin(), begin.end());
  const std::string wineHead = "WINE REGISTRY Version 2\n;; All keys relative to ...\n\n";
  const std::string wine = wineHead + "[Sub\\\\Key] 1700000000\n#time=1da\n";
  const struct {
    std::string text;
    std::string value;
  } cases[] = {
      {begin + "\"v\"=hex:61,62,\\\r\n  63\r\n", "abc"},
      {begin + "\"v\"=hex(3):61,6\r\n", "a\x06"},
      {begin + "\"v\"=hex:\r\n\"w\"=hex:61", ""},
      {begin + "\"v\"=dword:64636261", "abcd"},
      {begin + "\"v\"=\"a\\\"\\\\\"", Utf16(std::u16string(u"a\"\\\0", 4))},
      {begin + "\"V\"=hex:61\n\"v\"=hex:62", "b"},
      {begin + "\"v\"=hex:61\n\"v\"=-", "(none)"},
      {begin + "\"v\"=hex:61\n\"v\"hex:62\n", "a"},
      {begin + "\"v\"=hex:61\n[-HKEY_CURRENT_USER\\Sub]\n", "(none)"},
      {begin + "\"v\"=hex:61\n[-hkcu\\Su]\n[HKCU\\sub\\key]\n\"w\"=hex:62", "a"},
      {begin + "\"v\nv\"=hex:61\n\"v=\n\"v\"\n\"v\"=what", "(none)"},
      {head + "[HKEY_LOCAL_MACHINE\\Sub\\Key]\n\"v\"=hex:61", "(none)"},
      {Utf16(u'\xFEFF' + wide + u"\"v\"=hex:61"), "a"},
      {"REGEDIT4\n[HKEY_CURRENT_USER\\Sub\\Key]\n; \xE9\n\"v\"=hex:61", "a"},
      {wine + "\"v\"=hex:61,\\\n  62\n", "ab"},
      {wine + "\"v\"=str(2):\"\\x61\\n\\\\\"\n", Utf16(std::u16string(u"a\n\\\0", 4))},
      {wineHead + "[\\x53ub\\\\\\113\\x65y] 1\n\"\\x76\"=hex:61\n", "a"},
      {wineHead + "[Sub\\\\Key\\\\Be\\]low] 1\n", "(none)"},
      {"REGEDIT\n", "(refused)"},
      {"", "(refused)"},
      {"regf", "(refused)"},
  };
  const TempFolder folder;
  for (const auto& c : cases) {
    WriteBytes(folder / "file", c.text);
    EXPECT_EQ(ValueIn(folder / "file"), c.value) << c.text;
  }
  WriteBytes(folder / "file", begin + "@=hex:61\nx=hex:62\n");
  EXPECT_EQ(ValueIn(folder / "file", ""), "a") << "the default value";
}

TEST(RegistryFiles, MoreKeysThanAnyUserHasAreRefused) {
  const TempFolder folder;
  const std::filesystem::path file = folder / "export.reg";
  std::string text = "REGEDIT4\n";
  for (int i = 0; i < 1'000'000; ++i) text += "[HKCU]\n";
  WriteBytes(file, text);
  const Hooked<SetUserRegistry> none(nullptr);
  EXPECT_TRUE(SetUserRegistry(W(file)));
  std::ofstream(file, std::ios::app) << "[HKCU\\a]\n";
  EXPECT_FALSE(SetUserRegistry(W(file)));
}

TEST(RegistryFiles, TheDefaultIsTheCurrentWinePrefixAndKnowsItsFavorites) {
  const TempFolder folder;
  const std::filesystem::path prefix = folder / "caf\xE9";
  std::filesystem::create_directory(prefix);
  std::string key = kFolders;
  for (std::size_t at = 0; (at = key.find('\\', at)) != key.npos; at += 2) key.insert(at, "\\");
  const struct {
    const char* value;
    const char* folder;
  } cases[] = {{"str(2):\"%USERPROFILE%\\\\Favorites\"", "dosdevices/c:\\users\\me\\Favorites"},
               {"\"Z:\\\\fav\"", "dosdevices/z:\\fav"},
               {"\"\\\\\\\\server\\\\fav\"", ""},
               {"-", ""}};
  const Variable variable("WINEPREFIX", prefix.c_str());
  for (const auto& c : cases) {
    WriteBytes(prefix / "user.reg",
               "WINE REGISTRY Version 2\n[Volatile Environment] 1\n"
               "\"USERPROFILE\"=\"C:\\\\users\\\\me\"\n[" +
                   key + "] 1\n\"Favorites\"=" + c.value + "\n");
    EXPECT_EQ(std::filesystem::path(Folder()).lexically_normal(),
              *c.folder ? folder / "caf\\uDCE9" / c.folder : "(none)");
  }
}

/// A profile's file with the bytes "a", 0, "b" in its `Sub\Key`.
class HiveFile {
 public:
  explicit HiveFile(const std::filesystem::path& path) : path_(path) { WriteBytes(path, kSound); }

  void SetFavorites(std::string folder) const {
    hive_h* const hive = hivex_open(path_.c_str(), HIVEX_OPEN_WRITE);
    hive_node_h node = hivex_root(hive);
    for (std::size_t at = 0, end; at < kFolders.size(); at = end + 1) {
      end = std::min(kFolders.find('\\', at), kFolders.size());
      node = hivex_node_get_child(hive, node, kFolders.substr(at, end - at).c_str());
    }
    char name[] = "Favorites";
    const hive_set_value value = {name, hive_t_expand_string, folder.size(), folder.data()};
    EXPECT_EQ(hivex_node_set_value(hive, node, &value, 0), 0);
    EXPECT_EQ(hivex_commit(hive, nullptr, 0), 0);
    hivex_close(hive);
  }

  inline static const std::string kSound = TestData("../../fuzz/corpus/registry/NTUSER.DAT");

 private:
  std::filesystem::path path_;
};

TEST(RegistryFiles, AProfilesHiveKnowsItsFavorites) {
  const TempFolder profile;
  const std::filesystem::path file = profile / "NTUSER.DAT";
  const HiveFile hive(file);
  EXPECT_EQ(ValueIn(file), std::string("a\0b", 3));
  const Hooked<SetUserRegistry> none(nullptr);
  ASSERT_TRUE(SetUserRegistry(W(file)));
  EXPECT_EQ(OpenUserKey(W("Sub\\Other")), nullptr);
  hive.SetFavorites(Utf16(u"D:\\Fav"));
  EXPECT_EQ(Folder(), (profile / "Favorites").string());
  hive.SetFavorites(Utf16(u"%UserProfile%\\My Fav"));
  EXPECT_EQ(Folder(), (profile / "My Fav").string());
}

TEST(RegistryFiles, ADamagedHiveIsReadOrRefusedWithoutHarm) {
  const TempFolder profile;
  const std::filesystem::path file = profile / "NTUSER.DAT";
  const std::string& sound = HiveFile::kSound;
  for (const std::size_t size : {4, 100, 4095, 4096, 4100, 4128, 5000, 8193, 8196}) {
    WriteBytes(file, sound.substr(0, size));
    EXPECT_EQ(ValueIn(file), "(refused)") << size;
  }
  WriteBytes(file, sound);
  const auto put = [&](std::size_t at, int byte) {
    std::fstream(file, std::ios::binary | std::ios::in | std::ios::out)
        .seekp(static_cast<std::streamoff>(at))
        .put(static_cast<char>(byte));
  };
  for (std::size_t at = 4096; at < sound.size(); ++at) {
    if (!sound[at]) continue;
    put(at, sound[at] ^ 0xFF);
    ValueIn(file);
    put(at, sound[at]);
  }
}

}  // namespace vosmere::test::registry_files
