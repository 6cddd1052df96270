#include "vosmere/favorites/favorites.h"

#include "tests/support/order.h"
#include "tests/support/test.h"
#include "tests/support/user_registry.h"
#include "vosmere/platform/internal/system_version.h"

namespace vosmere::test::favorites {

/// A folder with the given files (a name that ends in a slash is a folder), and its list.
class Level {
 public:
  explicit Level(const std::vector<std::string>& entries = {}) {
    for (const std::string& name : entries)
      name.back() == '/' ? void(std::filesystem::create_directory(folder_ / name))
                         : WriteBytes(folder_ / name, "[InternetShortcut]\nURL=to:" + name);
  }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  ~Level() { CFavorite::DeleteList(list); }

  Wide path() const { return W((folder_ / "").parent_path()); }

  int Decode(const std::string& order, bool onXP = false, bool resolve = false) {
    CFavorite::DeleteList(list);
    favorites.SetRunningOnXP(onXP);
    return favorites.ExtractFavoritesFromOrderBuffer(
        nullptr, nullptr, path(), &list, &head, resolve,
        reinterpret_cast<const unsigned char*>(order.data()), static_cast<ULONG>(order.size()));
  }

  /// Names in order, folders with a slash; an entry with an order record shows its position.
  std::string Shown() const {
    std::string shown;
    for (const CFavorite* favorite = list; favorite; favorite = favorite->next) {
      std::string name = Utf8(favorite->name);
      const std::string start = Utf8(path()) + '\\';
      if (name.starts_with(start)) name.erase(0, start.size());
      shown += (shown.empty() ? "" : " ") + name + (favorite->isFile ? "" : "/");
      if (const COrderRecord* const record = favorite->GetOrderRecord())
        shown += "@" + std::to_string(record->position);
    }
    return shown;
  }

  CFavorites favorites;
  CFavorite* list = nullptr;
  COrderHead head;

 private:
  TempFolder folder_;
};

std::string Sized(std::uint32_t size, const std::string& record) {
  return LittleEndian(size, 4) + record.substr(4);
}

TEST(Favorites, ListsTheItemsOfAValueByPositionAndThenTheRest) {
  const std::string a = Record({"a", 0}), b = Record({"b", 1}), c = Record({"c", 2});
  const std::string wide =
      Order({{Utf16(u"a\xD800"), 1, kFile | kWide}, {Utf16(u"café.url"), 0, kFile | kWide}});
  const std::string xp = OrderHeader(1) + Record({"a", 0, kFile, u"long"});
  constexpr std::size_t kLongName = 20 + 22 + 2 + 20;
  const struct {
    std::vector<std::string> files;
    std::string value;
    std::string shown;
    bool onXP = false;
  } cases[] = {
      {{"a.url", "b.url", "c.url", "Sub/", "Desktop.ini"},
       Order({{"b.url", 2}, {"Sub", 0, kFolder}, {"A.URL", 1}}),
       "Sub/@0 A.URL@1 b.url@2 c.url"},
      {{"a.url"}, OrderHeader(0), ""},
      {{"new.url"}, Order({{"old.url", 0}}), "old.url@0 new.url"},
      {{}, Order({{"a", 1}, {"b"}, {"c", 0}}), "c@0 b@-5"},
      {{}, Order({{"a"}, {"b"}, {"c"}}), "a@-5 b@-5 c@-5"},
      {{}, Order({{"a", 3}, {"b", 1}, {"c", 1}}), "c@1"},
      {{}, Order({{"a", -1}, {"b", -6}, {"c", 0}}), "c@0"},
      {{}, Order({{"", 1, kFolder}, {"caf\xE9", 0}}), "café@0 /@1"},
      {{}, Order({{Utf16(u"w"), 0, kFolder | kWide}}), "w/@0"},
      // Any bytes.
      {{"d"}, "", "d"},
      {{"d"}, OrderHeader(3).substr(0, 19), "d"},
      {{"d"}, OrderHeader(3), "d"},
      {{"d"}, OrderHeader(0xFFFFFFFF) + a + b, "a@0 b@1 d"},
      {{"d"}, OrderHeader(2) + a + b + c, "a@0 b@1 d"},
      {{"d"}, OrderHeader(3) + a + Sized(0, b) + c, "a@0 b@1 d"},
      {{"d"}, OrderHeader(3) + a + Sized(1, b) + c, "a@0 b@1 d"},
      {{"d"}, OrderHeader(3) + a + Sized(0xFFFFFFFF, b) + c, "a@0 b@1 d"},
      {{"d"}, OrderHeader(3) + a + Sized(0u - a.size(), b) + c, "a@0 b@1 d"},
      {{"d"}, OrderHeader(3) + a + (b + c).substr(0, b.size() + 21), "a@0 b@1 d"},
      {{"d"}, OrderHeader(3) + a + (b + c).substr(0, b.size() + 22), "a@0 b@1 d"},
      {{"d"}, OrderHeader(3) + Record({std::string(259, 'x'), 0}) + b, "b@1 d"},
      {{"d"}, OrderHeader(3) + Record({std::string(2000, 'x'), 0, kFile | kWide}) + b, "b@1 d"},
      {{"d"}, OrderHeader(1) + Record({"unended", 0}).substr(0, 22 + 3), "une@0 d"},
      {{"d"}, OrderHeader(1) + Record({Utf16(u"une"), 0, kWide}).substr(0, 22 + 3), "u/@0 d"},
      {{}, xp.substr(0, kLongName + 5), "lo@0", true},
      {{}, xp.substr(0, kLongName - 1), "", true},
  };
  for (const auto& c : cases) {
    Level level(c.files);
    EXPECT_EQ(level.Decode(c.value, !c.onXP), 1);
    EXPECT_EQ(level.Decode(c.value, c.onXP), 1);
    EXPECT_EQ(level.Shown(), c.shown);
  }
  Level level({"café.url"});
  level.Decode(wide);
  EXPECT_THAT(level.Shown(), AnyOf("café.url@0 a\uFFFD@1", "café.url@0 a?@1"));
  EXPECT_TRUE(level.head.fromRegistry);
  EXPECT_EQ(level.head.words[2], 777u);
  EXPECT_EQ(level.head.words[4], 2u);
}

TEST(Favorites, AreFoundByTheirNameFromTheFolderOnInAnyLetterCase) {
  Level level({"new.url"});
  level.Decode(Order({{"old.url", 0}}));
  CFavorite* found = nullptr;
  EXPECT_EQ(level.list->FindOccurence(W(Utf8(level.path()) + "\\OLD.url"), &found), 1);
  EXPECT_EQ(found, level.list);
  EXPECT_EQ(level.list->FindOccurence(W("old.url"), &found), 0);
  EXPECT_EQ(found, level.list->next);
}

TEST(Favorites, OnXPTheLongNameIsTheItemsAndTheRecordIsKept) {
  Level level({"A long name.url"});
  level.Decode(Order({{"ALON~1.URL", 0, kFile, u"A long name.url"}, {"B", 1, kFolder, u"Bé"}}),
               true);
  ASSERT_EQ(level.Shown(), "A long name.url@0 Bé/@1");
  const COrderRecord& record = *level.list->GetOrderRecord();
  EXPECT_EQ(record.recordSize, record.itemSize + 8u);
  EXPECT_EQ(record.itemFlags, kFile);
  EXPECT_EQ(LittleEndian(record.wordAt12, 4), "size");
  EXPECT_EQ(LittleEndian(record.wordAt16, 4), "date");
  EXPECT_EQ(COrderRecord().wordAt12 + COrderRecord().wordAt16, 0u) << "until it is read";
  EXPECT_EQ(LittleEndian(record.halfWordAt20, 2), "at");
  EXPECT_STREQ(record.shortName.get(), "ALON~1.URL");
  EXPECT_EQ(record.shortNameLength, 10);
  EXPECT_TRUE(record.padded);
  EXPECT_EQ(std::string(record.extensionHeader + 8, record.extensionHeader + 16), "datetime");
  EXPECT_EQ(Utf8(record.longName), "A long name.url");
  EXPECT_EQ(record.longNameLength, 15);
  EXPECT_EQ(record.trailer[0] & 0xFFFF, 14u + 12) << "where the block stood in its item";
  EXPECT_TRUE(record.fromOrderValue);
  EXPECT_FALSE(level.list->next->GetOrderRecord()->padded);
}

TEST(Favorites, OnXPAWideShortNameIsSkippedByItsCharactersAsBytes) {
  // The header begins four characters and two bytes after the start of the name, so inside it.
  const std::string behind = std::string(20 - 4, '.') + Utf16(u"long") + std::string(2, '\0');
  std::string record = Record({Utf16(u"abcd"), 0, kFile | kWide});
  record = LittleEndian(record.size() + behind.size(), 4) + record.substr(4) + behind;
  Level level;
  level.Decode(OrderHeader(1) + record, true);
  ASSERT_EQ(level.Shown(), "long@0");
  EXPECT_EQ(level.list->GetOrderRecord()->shortName.get(), nullptr);
  EXPECT_EQ(level.list->GetOrderRecord()->extensionHeader[0], 'd');
}

TEST(Favorites, ResolvesFilesOnRequest) {
  Level level({"a.url", "b.url", "Sub/"});
  const std::string order = Order({{"b.url"}, {"gone.url"}, {"Sub", -5, kFolder}});
  level.Decode(order);
  EXPECT_EQ(Utf8(level.list->url), "");
  level.Decode(order, false, true);
  std::string urls;
  for (const CFavorite* f = level.list; f; f = f->next) urls += Utf8(f->url) + ",";
  EXPECT_EQ(urls, "to:b.url,,,to:a.url,");
}

TEST(Favorites, ReadsTheOrderUnderTheCurrentUser) {
  UserRegistry registry;
  Level level({"a", "b"});
  const auto extract = [&](const char* key) {
    CFavorite::DeleteList(level.list);
    return level.favorites.ExtractFavorites(registry.Key(key), level.path(), &level.list, nullptr,
                                            0);
  };
  EXPECT_EQ(extract(""), 0);
  EXPECT_EQ(level.Shown(), "");
  registry.Set("", "Order", Order({{"b"}, {"a"}}));
  registry.Set("Sub", "Other", "x");
  registry.Set("Empty", "Order", "");
  EXPECT_EQ(extract(""), 1);
  EXPECT_EQ(level.Shown(), "b@-5 a@-5");
  for (const char* const key : {"Sub", "Empty"}) {
    EXPECT_EQ(extract(key), 1);
    EXPECT_EQ(level.Shown().size(), 3u) << "both, from the directory";
  }
  WChar path[CFavorite::kNameLimit];
  level.favorites.GetFavoritesRegPath(path);
  EXPECT_EQ(Utf8(path),
            "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Favorites");
}

TEST(Favorites, OnlyXPAndServer2003AreXP) {
  static SystemVersion version;
  const Hooked<SetSystemVersionForTesting> hook([] { return version; });
  const struct {
    SystemVersion version;
    bool isXP;
  } cases[] = {{{true, 5, 1}, true},  {{true, 5, 2}, true},   {{true, 5, 0}, false},
               {{true, 6, 1}, false}, {{true, 10, 0}, false}, {{false, 5, 1}, false},
               {{true, 4, 1}, false}};
  for (const auto& c : cases) {
    version = c.version;
    EXPECT_EQ(CFavorites().AmIRunningOnXP(), c.isXP);
  }
}

TEST(Favorites, WithoutMemoryTheResultIsZero) {
  UserRegistry registry;
  registry.Set("", "Order", Order({{"a", 0, kFile, u"long"}, {Utf16(u"b"), 1, kWide}}));
  Level level({"c", "d"});
  const Wide key = registry.Key(""), path = level.path();
  ExpectNullAtEachFailure(
      [&]() -> CFavorite* {
        CFavorite* list = nullptr;
        if (level.favorites.ExtractFavorites(key, path, &list, nullptr, 1)) return list;
        CFavorite::DeleteList(list);
        return nullptr;
      },
      CFavorite::DeleteList);
}

}  // namespace vosmere::test::favorites
