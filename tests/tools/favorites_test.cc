#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "tests/support/files.h"
#include "tests/support/order.h"
#include "vosmere/platform/registry.h"

namespace vosmere::test {
namespace {

/// A folder of favorites beside what the tool writes.
class FavoritesTool : public testing::Test {
 protected:
  FavoritesTool() {
    std::filesystem::create_directories(folder_ / "Fav" / "News");
    WriteBytes(folder_ / "Fav" / "A & B.url", "[InternetShortcut]\r\nURL=http://a/?<a>=\"1\"\r\n");
    WriteBytes(folder_ / "Fav" / "News" / "n.url", "[InternetShortcut]\r\nURL=http://n/\r\n");
  }

  /// The exit code; `cd .` keeps a shell from taking quotes off that stand first and last.
  int Run(const std::string& options = "") {
    const auto quoted = [](std::filesystem::path path) {
      return '"' + path.make_preferred().string() + '"';
    };
    const std::string command = "cd . && " + quoted(VOSMERE_TOOL) + " favorites " +
                                quoted(folder_ / "Fav") + options + " >" + quoted(folder_ / "out") +
                                " 2>" + quoted(folder_ / "errors");
    const int status = std::system(command.c_str());
    return status > 255 ? status / 256 : status;
  }
  std::string Written(const std::string& option) {
    EXPECT_EQ(Run(' ' + option + " \"" + (folder_ / "file").string() + '"'), 0);
    return ReadBytes(folder_ / "file");
  }
  std::string Shown() const {
    std::string text = ReadBytes(folder_ / "out");
    std::erase(text, '\r');
    return text;
  }

  TempFolder folder_;
};

TEST_F(FavoritesTool, ShowsTheTree) {
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(Shown(),
            "[tree] Fav\n"
            "  [folder] News\n"
            "    [page] n  http://n/\n"
            "  [page] A & B  http://a/?<a>=\"1\"\n"
            "1 folders, 2 pages\n");
}

TEST_F(FavoritesTool, WritesTheBookmarkFileOfBrowsers) {
  EXPECT_EQ(Written("--html"),
            "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
            "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
            "<TITLE>Fav</TITLE>\n"
            "<H1>Fav</H1>\n"
            "<DL><p>\n"
            "    <DT><H3>News</H3>\n"
            "    <DL><p>\n"
            "        <DT><A HREF=\"http://n/\">n</A>\n"
            "    </DL><p>\n"
            "    <DT><A HREF=\"http://a/?&lt;a&gt;=&quot;1&quot;\">A &amp; B</A>\n"
            "</DL><p>\n");
}

TEST_F(FavoritesTool, WritesAnOpmlFileOfLinks) {
  EXPECT_EQ(Written("--opml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<opml version=\"2.0\">\n"
            "<head><title>Fav</title></head>\n"
            "<body>\n"
            "    <outline text=\"News\">\n"
            "        <outline text=\"n\" type=\"link\" url=\"http://n/\"/>\n"
            "    </outline>\n"
            "    <outline text=\"A &amp; B\" type=\"link\" "
            "url=\"http://a/?&lt;a&gt;=&quot;1&quot;\"/>\n"
            "</body></opml>\n");
}

TEST_F(FavoritesTool, TheOrderComesFromTheChosenRegistry) {
  std::string hex;
  for (const unsigned char byte : Order({{"A & B.url"}})) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x,", byte);
    hex += digits;
  }
  WriteBytes(
      folder_ / "order.reg",
      "REGEDIT4\n[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
      "MenuOrder\\Favorites]\n\"Order\"=hex:" +
          hex);
  const bool canChoose = SetUserRegistry(W(folder_ / "order.reg"));  // not where the system has one
  EXPECT_EQ(Run(" --reg \"" + (folder_ / "order.reg").string() + '"'), canChoose ? 0 : 2);
  EXPECT_EQ(Shown().starts_with("[tree] Fav\n  [page] A & B"), canChoose);
  EXPECT_EQ(Run(" --reg \"" + (folder_ / "none.reg").string() + '"'), 2);
  EXPECT_EQ(Run(" --reg a --wine b"), 2);
}

}  // namespace
}  // namespace vosmere::test
