#include "tests/support/test.h"
#include "tests/support/tool.h"
#include "tests/support/user_registry.h"

namespace vosmere::test::favorites_tool {

/// A folder of favorites beside what the tool writes.
class FavoritesTool : public testing::Test {
 protected:
  FavoritesTool() {
    std::filesystem::create_directories(folder_ / "Fav" / "News");
    WriteBytes(folder_ / "Fav" / "A & B's.url",
               "[InternetShortcut]\r\nURL=http://a/?<a>=\"1\"\r\n");
    WriteBytes(folder_ / "Fav" / "News" / "n.url", "[InternetShortcut]\r\nURL=http://n/\r\n");
  }

  Outcome Run(const std::string& options) const {
    return RunTool("favorites " + Quoted(folder_ / "Fav") + options);
  }

  TempFolder folder_;
};

TEST_F(FavoritesTool, ShowsTheTree) {
  WriteBytes(folder_ / "Fav" / "other.txt", "");
  const Outcome run = Run("");
  const std::string warning = (folder_ / "Fav").make_preferred().string() + ": warning: ";
  EXPECT_EQ(run.errors, warning + "no stored menu order was found; sorted by name\n" + warning +
                            "1 file left out: no Internet shortcut\n");
  EXPECT_EQ(run.out,
            "[tree] Fav\n"
            "  [folder] News\n"
            "    [page] n  http://n/\n"
            "  [page] A & B's  http://a/?<a>=\"1\"\n"
            "1 folder, 2 pages\n");
}

TEST_F(FavoritesTool, WritesBookmarksAndLinksForOtherPrograms) {
  EXPECT_EQ(Run(" --html " + Quoted(folder_ / "html")).exitCode, 0);
  EXPECT_EQ(ReadBytes(folder_ / "html"), TestData("favorites.html"));
  EXPECT_EQ(Run(" --opml -").bytes, TestData("favorites.opml"));
}

TEST_F(FavoritesTool, WritesACollectionThatIsReadBackWithAllPages) {
  ASSERT_EQ(Run(" --rss " + Quoted(folder_ / "rss")).exitCode, 0);
  EXPECT_EQ(RunTool("show " + Quoted(folder_ / "rss")).out,
            "[collection] Fav\n"
            "  [folder] News\n"
            "    [item] n  http://n/\n"
            "  [item] A & B's  http://a/?<a>=\"1\"\n"
            "1 folder, 2 items, 0 unread, 0 flagged\n");
}

TEST_F(FavoritesTool, ARegistryThatCannotBeReadIsTrouble) {
  EXPECT_EQ(Run(" --reg " + Quoted(folder_ / "none.reg")).exitCode, 2);
  EXPECT_EQ(Run(" --reg a --wine b").exitCode, 2);
}

}  // namespace vosmere::test::favorites_tool
