#include <gtest/gtest.h>

#include "tests/support/tool.h"
#include "tests/support/user_registry.h"

namespace vosmere::test {
namespace {

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
  EXPECT_EQ(Run("").out,
            "[tree] Fav\n"
            "  [folder] News\n"
            "    [page] n  http://n/\n"
            "  [page] A & B's  http://a/?<a>=\"1\"\n"
            "1 folders, 2 pages\n");
}

TEST_F(FavoritesTool, WritesBookmarksAndLinksForOtherPrograms) {
  EXPECT_EQ(Run(" --html " + Quoted(folder_ / "html")).exitCode, 0);
  EXPECT_EQ(ReadBytes(folder_ / "html"),
            "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
            "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
            "<TITLE>Fav</TITLE>\n"
            "<H1>Fav</H1>\n"
            "<DL><p>\n"
            "    <DT><H3>News</H3>\n"
            "    <DL><p>\n"
            "        <DT><A HREF=\"http://n/\">n</A>\n"
            "    </DL><p>\n"
            "    <DT><A HREF=\"http://a/?&lt;a&gt;=&quot;1&quot;\">A &amp; B's</A>\n"
            "</DL><p>\n");
  EXPECT_EQ(Run(" --opml -").bytes,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<opml version=\"2.0\">\n"
            "<head><title>Fav</title></head>\n"
            "<body>\n"
            "    <outline text=\"News\">\n"
            "        <outline text=\"n\" type=\"link\" url=\"http://n/\"/>\n"
            "    </outline>\n"
            "    <outline text=\"A &amp; B's\" type=\"link\" "
            "url=\"http://a/?&lt;a&gt;=&quot;1&quot;\"/>\n"
            "</body></opml>\n");
}

TEST_F(FavoritesTool, WritesACollectionThatIsReadBackWithAllPages) {
  ASSERT_EQ(Run(" --rss " + Quoted(folder_ / "rss")).exitCode, 0);
  EXPECT_EQ(RunTool("show " + Quoted(folder_ / "rss")).out,
            "[collection] Fav\n"
            "  [folder] News\n"
            "    [item] n  http://n/\n"
            "  [item] A & B's  http://a/?<a>=\"1\"\n"
            "1 folders, 2 items, 0 unread, 0 flagged\n");
}

TEST_F(FavoritesTool, ARegistryThatCannotBeReadIsTrouble) {
  EXPECT_EQ(Run(" --reg " + Quoted(folder_ / "none.reg")).exitCode, 2);
  EXPECT_EQ(Run(" --reg a --wine b").exitCode, 2);
}

}  // namespace
}  // namespace vosmere::test
