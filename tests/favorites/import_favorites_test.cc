#include "vosmere/favorites/import_favorites.h"

#include "tests/support/order.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "tests/support/user_registry.h"

namespace vosmere::test::import_favorites {

/// A Favorites folder, and the orders of its menus.
class Favorites {
 public:
  void AddPage(const std::filesystem::path& name) {
    WriteBytes(folder_ / "" / name,
               "[InternetShortcut]\r\nURL=to:" + name.stem().string() + "\r\n");
  }
  void AddFolder(const std::string& name) { std::filesystem::create_directory(folder_ / name); }
  std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }

  /// The tree without the name of its root, which is that of the folder; "(null)" for none.
  std::string Import() {
    RNode* const root = ImportFavorites(registry.Key(""), W((folder_ / "").parent_path()), &report);
    if (!root) return "(null)";
    EXPECT_EQ(NameOf(root), (folder_ / "").parent_path().filename().string());
    root->item->SetName(W("*"));
    return Shape(TreePtr(root));
  }

  UserRegistry registry;
  FavoritesReport report;

 private:
  TempFolder folder_;
};

TEST(ImportFavorites, GivesTheWholeTreeInMenuOrder) {
  Favorites favorites;
  for (const char* const folder : {"News", "News/Daily", "Empty"}) favorites.AddFolder(folder);
  for (const char* const page :
       {"a.url", "Long-b.URL", "c.url", "News/x.url", "News/y.url", "News/Daily/z.url"})
    favorites.AddPage(page);
  favorites.AddPage(u"dé.url");
  WriteBytes(favorites / "Desktop.ini", "");
  WriteBytes(favorites / "notes.txt", "");
  const std::string wide = Utf16(u"D~1.URL");
  favorites.registry.Set("", "Order",
                         Order({{"NEWS", 2, kFolder, u"News", 9},
                                {"LONG-B~1.URL", 0, kFile, u"Long-b.url", 7},
                                {"c.url", 1},
                                {wide, 4, kFile | kWide, u"Dé.url", 3},
                                {"gone.url", 3}}));
  favorites.registry.Set("News", "Order", Order({{"Y~1.URL", 0, kFile, u"y.url", 8}}));
  favorites.registry.Set("News\\Daily", "Order", Order({{"z.url"}}));
  EXPECT_EQ(favorites.Import(), "*(Long-b c News(y Daily(z) x) dé Empty() a)");
  EXPECT_EQ(favorites.report.items, 7);
  EXPECT_EQ(favorites.report.folders, 3);
  EXPECT_EQ(favorites.report.foldersInOrder, 3);
  EXPECT_EQ(favorites.report.recordsWithoutFile, 1);
  EXPECT_EQ(favorites.report.recordsNotUnderstood, 0);
  EXPECT_EQ(favorites.report.otherFiles, 1);
}

TEST(ImportFavorites, WithoutAnOrderFoldersComeFirstAndThenNames) {
  Favorites favorites;
  for (const char* const page : {"B.url", "a.url", "c.url"}) favorites.AddPage(page);
  favorites.AddFolder("Z");
  EXPECT_EQ(favorites.Import(), "*(Z() a B c)");
  EXPECT_EQ(favorites.report.foldersInOrder, 0);
}

TEST(ImportFavorites, ABadRecordCostsItsOwnPlaceOnly) {
  const std::string d = Record({"d.url", 0}), c = Record({"c.url", 1}), b = Record({"b.url", 2});
  const std::string unknown = Record({"B~1.URL", 2, kFile, u"b.url", 6});
  const std::string shortName = Record({"b.url", 2, kFile, u"a.url", 6});
  std::string unmarked = Record({"B~1.URL", 2, kFile, u"b.url"}), misplaced = unmarked;
  unmarked[unmarked.find("\xEF\xBE")] = 0;
  misplaced[misplaced.size() - 2] = 0;
  const struct {
    std::string order;
    const char* shape;
    int notUnderstood;
  } cases[] = {
      {OrderHeader(3) + d + Record({"c.url", -7}) + b, "*(d b a c)", 1},
      {OrderHeader(3) + d + Record({"", 1}) + b, "*(d b a c)", 1},
      {OrderHeader(3) + d + Record({"c.url", 9999}) + b, "*(d b c a)", 0},
      {OrderHeader(3) + d + unknown + c, "*(d c a b)", 0},
      {OrderHeader(3) + d + shortName + c, "*(d c b a)", 0},
      {OrderHeader(3) + d + unmarked + c, "*(d c a b)", 0},
      {OrderHeader(3) + d + misplaced + c, "*(d c b a)", 0},
      {OrderHeader(3) + Record({"b.url", 1}) + Record({"b.url", 0}) + d, "*(d b a c)", 0},
      {OrderHeader(3) + d + LittleEndian(0, 4) + c.substr(4) + b, "*(d c a b)", 1},
      {OrderHeader(0), "*(a b c d)", 0},
      {"short", "*(a b c d)", 1},
  };
  for (const auto& c : cases) {
    Favorites favorites;
    for (const char* const page : {"a.url", "b.url", "c.url", "d.url"}) favorites.AddPage(page);
    favorites.registry.Set("", "Order", c.order);
    EXPECT_EQ(favorites.Import(), c.shape);
    EXPECT_EQ(favorites.report.recordsNotUnderstood, c.notUnderstood) << c.shape;
  }
}

TEST(ImportFavorites, ResolvesAddressesAndCountsThoseMissing) {
  Favorites favorites;
  favorites.AddPage("a.url");
  WriteBytes(favorites / "b.url", "");
  WriteBytes(favorites / "c.url", "[InternetShortcut]\nURL=http://" + std::string(2085, 'c'));
  const TreePtr tree(ImportFavorites(favorites.registry.Key(""), W((favorites / "").parent_path()),
                                     &favorites.report));
  ASSERT_TRUE(tree);
  EXPECT_EQ(
      Shape(tree->firstChild,
            [](const RNode* link) { return Utf8(static_cast<CUrlNode*>(link->item)->GetUrl()); }),
      "to:a");
  EXPECT_EQ(Utf8(static_cast<CUrlNode*>(tree["b"]->item)->GetUrl()), "about:blank");
  EXPECT_EQ(favorites.report.shortcutsWithoutAddress, 2);
}

TEST(ImportFavorites, LinkedFoldersAreNotFollowed) {
  Favorites favorites;
  favorites.AddPage("a.url");
  std::error_code failed;
  std::filesystem::create_directory_symlink(".", favorites / "circle", failed);
  EXPECT_EQ(favorites.Import(), failed ? "*(a)" : "*(circle() a)");
  EXPECT_EQ(favorites.report.foldersNotRead, failed ? 0 : 1);
}

TEST(ImportFavorites, WhatCannotBeReadGivesNull) {
  const UserRegistry registry;
  const TempFolder folder;
  WriteBytes(folder / "file", "");
  for (const char* const name : {"none", "file"})
    EXPECT_EQ(ImportFavorites(registry.Key(""), W(folder / name), nullptr), nullptr);
  EXPECT_EQ(ImportFavorites(registry.Key(""), W(""), nullptr), nullptr);
}

TEST(ImportFavorites, WithoutMemoryItGivesNullAndLosesNothing) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "sub");
  WriteBytes(folder / "sub" / "a.url", "[InternetShortcut]\nURL=a:1");
  UserRegistry registry;
  registry.Set("", "Order", Order({{"sub", 0, kFolder}}));
  const Wide key = registry.Key(""), path = W((folder / "").parent_path());
  for (const Failures failures : {Failures::kAll, Failures::kOne})
    ExpectNullAtEachFailure([&] { return ImportFavorites(key, path, nullptr); }, DeleteTree,
                            failures);
}

}  // namespace vosmere::test::import_favorites
