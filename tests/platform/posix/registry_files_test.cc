// The files that stand for a user's registry where the system has none.
#include <gtest/gtest.h>
#include <hivex.h>

#include <cstdlib>
#include <cstring>

#include "tests/support/files.h"
#include "vosmere/platform/registry.h"
#include "vosmere/platform/shell.h"

namespace vosmere::test {
namespace {

constexpr char kFolders[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

/// Chooses a file while it lives; restores the default afterwards.
class Chosen {
 public:
  explicit Chosen(const std::filesystem::path& path) : works_(SetUserRegistry(W(path))) {}
  Chosen(const Chosen&) = delete;
  Chosen& operator=(const Chosen&) = delete;
  ~Chosen() { SetUserRegistry(nullptr); }
  explicit operator bool() const { return works_; }

 private:
  bool works_;
};

/// The value "v" of the key `Sub\Key`; "(none)" without one.
std::string ReadValue() {
  const HKEY key = OpenUserKey(W("sub\\kEY"));
  char bytes[4096];
  ULONG size = sizeof bytes;
  const bool read = ReadKeyValue(key, W("V"), bytes, &size);
  CloseKey(key);
  return read ? std::string(bytes, size) : "(none)";
}

std::string ValueIn(const std::string& text) {
  const TempFolder folder;
  WriteBytes(folder / "file", text);
  const Chosen chosen(folder / "file");
  return chosen ? ReadValue() : "(refused)";
}

std::string Utf16(const std::string& ascii) {
  std::string bytes;
  for (const char c : ascii) bytes += {c, '\0'};
  return bytes;
}

TEST(RegistryFiles, ExportedOnes) {
  const std::string begin = "Windows Registry Editor Version 5.00\r\n\r\n";
  const std::string key = "[HKEY_CURRENT_USER\\Sub\\Key]\r\n";
  const struct {
    std::string text;
    std::string value;
  } cases[] = {
      {begin + key + "\"v\"=hex:61,62,\\\r\n  63\r\n", "abc"},
      {begin + key + "\"v\"=hex(3):61,6\r\n", "a\x06"},
      {begin + key + "\"v\"=hex:\r\n\"w\"=hex:61", ""},
      {begin + key + "\"v\"=dword:64636261", "abcd"},
      {begin + key + "\"v\"=\"a\\\"\\\\\"", Utf16(std::string("a\"\\\0", 4))},
      {begin + key + "\"V\"=hex:61\n\"v\"=hex:62", "b"},
      {begin + key + "\"v\"=hex:61\n\"v\"=-", "(none)"},
      {begin + key + "\"v\"=hex:61\n[-HKEY_CURRENT_USER\\Sub]\n", "(none)"},
      {begin + key + "\"v\"=hex:61\n[-hkcu\\Su]\n[HKCU\\sub\\key]\n\"w\"=hex:62", "a"},
      {begin + "[HKEY_LOCAL_MACHINE\\Sub\\Key]\n\"v\"=hex:61", "(none)"},
      {begin + key + "\"v\nv\"=hex:61\n\"v=\n\"v\"\n\"v\"=what", "(none)"},
      {"\xFF\xFE" + Utf16(begin + key + "\"v\"=hex:61"), "a"},
      {"REGEDIT4\n\n" + key + "; \xE9\n\"v\"=hex:61", "a"},
      {"REGEDIT\n" + key + "\"v\"=hex:61", "(refused)"},
      {"", "(refused)"},
      {"regf", "(refused)"},
  };
  for (const auto& c : cases) EXPECT_EQ(ValueIn(c.text), c.value) << c.text;
}

TEST(RegistryFiles, AWinePrefixes) {
  const std::string begin = "WINE REGISTRY Version 2\n;; All keys relative to ...\n\n#arch=win64\n\n";
  const std::string key = "[Sub\\\\Key] 1700000000\n#time=1da\n";
  EXPECT_EQ(ValueIn(begin + key + "\"v\"=hex:61,\\\n  62\n"), "ab");
  EXPECT_EQ(ValueIn(begin + "[\\x53ub\\\\\\113\\x65y] 1\n\"\\x76\"=hex:61\n"), "a");
  EXPECT_EQ(ValueIn(begin + key + "\"v\"=str(2):\"\\x61\\n\\\\\"\n"),
            Utf16(std::string("a\n\\\0", 4)));
  EXPECT_EQ(ValueIn(begin + "[Sub\\\\Key\\\\Be\\]low] 1\n"), "(none)");
}

TEST(RegistryFiles, TheFavoritesFolderOfAPrefix) {
  const TempFolder prefix;
  const std::string text =
      "WINE REGISTRY Version 2\n[" + std::string("Volatile Environment] 1\n") +
      "\"USERPROFILE\"=\"C:\\\\users\\\\me\"\n";
  std::string key = kFolders;
  for (std::size_t at = 0; (at = key.find('\\', at)) != key.npos; at += 2) key.insert(at, "\\");
  const struct {
    const char* value;
    const char* folder;
  } cases[] = {{"str(2):\"%USERPROFILE%\\\\Favorites\"", "dosdevices/c:\\users\\me\\Favorites"},
               {"\"Z:\\\\fav\"", "dosdevices/z:\\fav"},
               {"\"\\\\\\\\server\\\\fav\"", ""},
               {"-", ""}};
  for (const auto& c : cases) {
    WriteBytes(prefix / "user.reg", text + "[" + key + "] 1\n\"Favorites\"=" + c.value + "\n");
    setenv("WINEPREFIX", (prefix / "").parent_path().c_str(), 1);
    WChar folder[kShellPathLimit];
    EXPECT_EQ(FavoritesFolder(folder), *c.folder != 0) << c.value;
    EXPECT_EQ(Utf8(folder), *c.folder ? (prefix / c.folder).string() : "");
    const Chosen chosen(prefix / "");
    EXPECT_TRUE(chosen);
  }
  unsetenv("WINEPREFIX");
}

template <class Integer>
void Put(std::string& bytes, std::size_t at, Integer value) {
  std::memcpy(&bytes[at], &value, sizeof value);
}

/// A hive with nothing in it: its header, one bin, the root key, and that key's security record.
std::string EmptyHive() {
  std::string hive(8192, '\0');
  hive.replace(0, 4, "regf");
  for (const auto& [at, value] : {std::pair(4, 1), {8, 1}, {20, 1}, {24, 3}, {32, 1}, {36, 0x20},
                                  {40, 4096}, {44, 1}})
    Put(hive, at, value);
  hive.replace(4096, 4, "hbin");
  Put(hive, 4096 + 8, 4096);
  const std::size_t root = 4096 + 32, security = root + 96, unused = security + 32;
  Put(hive, root, -96);
  hive.replace(root + 4, 2, "nk");
  Put(hive, root + 6, std::uint16_t{0x2C});
  for (const int at : {32, 36, 44, 52}) Put(hive, root + at, -1);  // no lists, no class
  Put(hive, root + 48, static_cast<int>(security - 4096));
  Put(hive, root + 76, std::uint16_t{4});
  hive.replace(root + 80, 4, "root");
  Put(hive, security, -32);
  hive.replace(security + 4, 2, "sk");
  for (const int at : {8, 12}) Put(hive, security + at, static_cast<int>(security - 4096));
  Put(hive, security + 16, 1);
  Put(hive, unused, static_cast<int>(hive.size() - unused));
  std::uint32_t sum = 0, word = 0;
  for (std::size_t at = 0; at < 508; at += 4, sum ^= word) std::memcpy(&word, &hive[at], 4);
  Put(hive, 508, sum);
  return hive;
}

void AddValue(const std::filesystem::path& path, const std::string& key, const std::string& name,
              hive_type type, std::string bytes) {
  if (!std::filesystem::exists(path)) WriteBytes(path, EmptyHive());
  hive_h* const hive = hivex_open(path.c_str(), HIVEX_OPEN_WRITE);
  ASSERT_TRUE(hive) << std::strerror(errno);
  hive_node_h node = hivex_root(hive);
  for (std::size_t at = 0; at < key.size();) {
    const std::size_t end = std::min(key.find('\\', at), key.size());
    const std::string part = key.substr(at, end - at);
    const hive_node_h child = hivex_node_get_child(hive, node, part.c_str());
    node = child ? child : hivex_node_add_child(hive, node, part.c_str());
    at = end + 1;
  }
  std::string nameCopy = name;
  const hive_set_value value = {nameCopy.data(), type, bytes.size(), bytes.data()};
  EXPECT_EQ(hivex_node_set_value(hive, node, &value, 0), 0) << std::strerror(errno);
  EXPECT_EQ(hivex_commit(hive, nullptr, 0), 0);
  hivex_close(hive);
}

TEST(RegistryFiles, AProfilesHiveAndItsFavoritesFolder) {
  const TempFolder profile;
  const std::filesystem::path file = profile / "NTUSER.DAT";
  AddValue(file, "Sub\\Key", "v", hive_t_binary, std::string("a\0b", 3));
  const Chosen chosen(file);
  ASSERT_TRUE(chosen);
  EXPECT_EQ(ReadValue(), std::string("a\0b", 3));
  EXPECT_EQ(OpenUserKey(W("Sub\\Other")), nullptr);

  const auto folder = [] {
    WChar path[kShellPathLimit];
    return FavoritesFolder(path) ? Utf8(path) : "(none)";
  };
  EXPECT_EQ(folder(), (profile / "Favorites").string());
  AddValue(file, kFolders, "Favorites", hive_t_expand_string, Utf16("%USERPROFILE%\\My Fav"));
  EXPECT_EQ(folder(), (profile / "My Fav").string());
}

TEST(RegistryFiles, ADamagedHiveIsReadOrRefusedWithoutHarm) {
  const TempFolder profile;
  const std::filesystem::path file = profile / "NTUSER.DAT";
  AddValue(file, "Sub\\Key", "v", hive_t_binary, std::string(3000, 'v'));
  const std::string sound = ReadBytes(file);
  const auto read = [&](const std::string& bytes) {
    WriteBytes(file, bytes);
    const Chosen chosen(file);
    return chosen ? ReadValue() : "(refused)";
  };
  for (const std::size_t size : {4, 100, 4095, 4096, 4100, 4128, 5000})
    EXPECT_EQ(read(sound.substr(0, size)), "(refused)") << size;
  for (std::size_t at = 4096; at < 4096 + 700; ++at) {
    std::string damaged = sound;
    damaged[at] = static_cast<char>(damaged[at] ^ 0xFF);
    read(damaged);
  }
}

}  // namespace
}  // namespace vosmere::test
