// The command-line tool, run as users and scripts run it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "tests/support/document.h"
#include "tests/support/tool.h"
#include "tests/support/tree.h"

namespace vosmere::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// One file to run the tool on, and a folder that goes away with it.
class Bench {
 public:
  explicit Bench(const std::string& document = "") { WriteBytes(file(), document); }

  std::filesystem::path file() const { return folder_ / "in.opml"; }
  std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }

  Outcome On(const std::string& verb) const { return RunTool(verb + ' ' + Quoted(file())); }
  Outcome Copy(const std::string& to) const {
    return RunTool("copy " + Quoted(file()) + ' ' + Quoted(folder_ / to));
  }

 private:
  TempFolder folder_;
};

/// How many warnings are about losses, not about values that a copy gets.
std::ptrdiff_t Losses(const Outcome& check) {
  std::istringstream lines(check.out);
  std::ptrdiff_t losses = 0;
  for (std::string line; std::getline(lines, line);)
    losses += line.find(": warning: ") != line.npos && line.find(": a copy ") == line.npos;
  return losses;
}

/// A document that the library wrote itself.
std::string OwnDocument() {
  const TreePtr tree = Tree("root(News(@daily @weekly) Empty())");
  tree["daily"]->item->SetUUID(W("00000000-0000-4000-8000-000000000002"));
  tree["daily"]->item->GetNodeStat()->MarkAsUnread(true);
  tree["weekly"]->item->GetNodeStat()->SetFlag(3);
  ColctAt(tree["weekly"])->SetUrl(W("http:\\\\feeds.example\\weekly"));
  return SavedOpml(tree);
}

TEST(Tool, ShowsTheTreeWithKindsAddressesAndMarks) {
  const Outcome show = Bench(OwnDocument()).On("show");
  EXPECT_EQ(show.exitCode, 0) << show.errors;
  EXPECT_EQ(show.out,
            "[tree] root\n"
            "  [folder] News\n"
            "    [collection] daily  (unread)\n"
            "    [collection] weekly  http://feeds.example/weekly  (flag 3)\n"
            "  [folder] Empty\n"
            "2 folders, 2 collections, 1 unread, 1 flagged\n");
}

TEST(Tool, ShowsJsonForScripts) {
  const Outcome show = Bench(OwnDocument()).On("show --json");
  EXPECT_EQ(show.exitCode, 0) << show.errors;
  const auto tree = nlohmann::json::parse(show.out, nullptr, false);
  ASSERT_TRUE(tree.is_object()) << show.out;
  const auto& weekly = tree["children"][0]["children"][1];
  EXPECT_EQ(weekly["kind"], "collection");
  EXPECT_EQ(weekly["name"], "weekly");
  EXPECT_EQ(weekly["xmlUrl"], "http://feeds.example/weekly");
  EXPECT_EQ(weekly["flag"], 3);
  EXPECT_EQ(tree["children"][1]["children"], nlohmann::json::array());
}

TEST(Tool, WhatADocumentDoesNotSayIsNullForScripts) {
  EXPECT_EQ(
      Bench(Opml("<outline type='rss'><vsm:stat modified='7'/></outline>")).On("show --json").out,
      "{\"kind\":\"folder\",\"name\":\"root\",\"description\":null,\"id\":null,\"version\":null,"
      "\"deleted\":false,\"unread\":false,\"flag\":0,\"children\":["
      "{\"kind\":\"collection\",\"name\":null,\"description\":null,\"xmlUrl\":null,"
      "\"htmlUrl\":null,\"id\":null,\"version\":null,\"deleted\":false,\"unread\":false,\"flag\":0,"
      "\"added\":null,\"modified\":7,\"lastVisited\":null,\"expanded\":false}]}\n");
}

TEST(Tool, HostileNamesDoNotReachTheTerminal) {
  const Outcome show = Bench(Opml("<outline text=\"a&#x9b;31m&#10;b&#x202e;c\"/>")).On("show");
  EXPECT_THAT(show.out, HasSubstr("[folder] a\\u009B31m\\u000Ab\\u202Ec\n"));
}

TEST(Tool, SaysWhyADocumentIsNotWhatItShouldBe) {
  const struct {
    const char* document;
    const char* error;
  } cases[] = {
      {"<opml>\n<body>\n  <outline text=\"a\"</body></opml>", "in.opml:3:"},
      {"<feed>text</feed>", "unknown kind of document: the root element is 'feed'"},
      {"<opml/>", "the root element is empty"},
      {"", "in.opml:"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.document);
    const Bench bench(c.document);
    for (const char* verb : {"show", "check"}) {
      const Outcome outcome = bench.On(verb);
      EXPECT_EQ(outcome.exitCode, 1);
      EXPECT_THAT(outcome.errors, HasSubstr(c.error));
      EXPECT_THAT(outcome.out, IsEmpty());
    }
    EXPECT_EQ(bench.Copy("out.opml").exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists(bench / "out.opml"));
  }
}

TEST(Tool, UsageAndFilesThatCannotBeReadOrWrittenAreTwo) {
  const Bench bench(OwnDocument());
  const std::string in = Quoted(bench.file());
  const std::string missing = Quoted(bench / "missing" / "file.opml");
  for (const std::string& arguments :
       {std::string(), "paint " + in, "show --colour " + in, "show " + missing,
        "copy " + in + ' ' + missing, "copy " + in + ' ' + Quoted(bench.file().parent_path())})
    EXPECT_EQ(RunTool(arguments).exitCode, 2) << arguments;
  for (const std::string& arguments :
       {"copy " + in + ' ' + missing, "note " + in + " News " + missing})
    EXPECT_THAT(RunTool(arguments).errors,
                testing::ContainsRegex("error: cannot be written: .+\n"));

  const Outcome help = RunTool("--help");
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_THAT(help.out, HasSubstr("Exit codes: 0"));
}

TEST(Tool, ChecksSeveralFilesAndTheWorstWins) {
  const Bench bench(OwnDocument());
  WriteBytes(bench / "bad.opml", "<opml>");
  const std::string in = Quoted(bench.file()), bad = Quoted(bench / "bad.opml");
  const Outcome check = RunTool("check " + bad + ' ' + in);
  EXPECT_EQ(check.exitCode, 1);
  EXPECT_THAT(check.out, HasSubstr("in.opml: fine"));
  EXPECT_EQ(RunTool("check " + Quoted(bench / "none") + ' ' + bad + ' ' + in).exitCode, 2);
}

TEST(Tool, ChecksForScripts) {
  const struct {
    const char* document;
    int exitCode;
    int strict;
    const char* json;  // without the name of the file
  } cases[] = {
      {"<opml><head><title>t</title></head></opml>", 0, 0,
       R"j("loads":true,"copyLoads":true,"error":null,"line":null,"column":null,"warnings":[]})j"},
      {"<opml><head><title>t</title></head><body><outline/></body></opml>", 0, 1,
       R"j("loads":true,"copyLoads":true,"error":null,"line":null,"column":null,"warnings":[)j"
       R"j({"what":"an empty name becomes \"No name\"","count":1,"places":["(no name)"]}]})j"},
      {"<opml><head><title>t</title></head><body><outline text='Q&amp;A'/></body></opml>", 0, 0,
       R"j("loads":true,"copyLoads":true,"error":null)j"},
      {"<opml>\n<body></opml>", 1, 1, R"j("loads":false,"copyLoads":null,"error":")j"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.document);
    const Bench bench(c.document);
    EXPECT_EQ(bench.On("check").exitCode, c.exitCode);
    const Outcome quiet = bench.On("check --strict --quiet");
    EXPECT_EQ(quiet.exitCode, c.strict);
    EXPECT_EQ(quiet.out + quiet.errors, "");
    const Outcome json = bench.On("check --json");
    EXPECT_EQ(json.errors, "");
    EXPECT_THAT(json.out, HasSubstr(c.json));
    EXPECT_FALSE(nlohmann::json::parse(json.out, nullptr, false).is_discarded());
  }
}

TEST(Tool, WarnsOfWhatASaveLoses) {
  const std::string longName(250, 'n');
  const std::string longId(40, 'i');
  const std::string feed = "<outline text=\"f\" type=\"rss\" xmlUrl=\"u\"";
  const struct {
    std::string outline;
    const char* warning;
  } cases[] = {
      {"<outline text=\"" + longName + "\"/>", "name is cut to 199 characters: nnn"},
      {"<outline/>", "an empty name becomes \"No name\""},
      {"<outline text=\"a\" title=\"b\"/>", "'text' and 'title' differ"},
      {"<outline text=\"a\" type=\"link\"/>", "the attribute 'type' of 'outline' is not kept"},
      {"<outline text=\"a\"><vsm:stat added=\"1\"/></outline>",
       "added, modified and lastVisited are lost: a"},
      {"<outline text=\"a\"><sx:sync id=\"x\" deleted=\"true\"/></outline>", "deleted is lost"},
      {"<outline text=\"a\"><sx:sync id=\"" + longId + "\"/></outline>",
       "id is too long and was cut: "},
      {"<outline text=\"a\"><sx:sync id=\"x\" version=\"0\"/></outline>", "version is lost"},
      {feed + " htmlUrl=\"h\"/>", "htmlUrl is lost"},
      {feed + " language=\"en\"/>", "the attribute 'language' of 'outline' is not kept: "},
      {feed + "><vsm:owner>me</vsm:owner></outline>", "the element 'vsm:owner' is not kept: "},
      {feed + "><vsm:stat added=\"12x\"/></outline>", "(vsm:stat added)"},
      {feed + "><outline text=\"g\"/></outline>",
       "outlines inside a collection are moved out of it"},
      {"<outline text=\"f\" type=\"rss\"/>", "gets the address about:blank"},
      {"<outline text=\"f\" xmlUrl=\"a\\b\"/>", "a backslash in xmlUrl becomes a slash"},
      {"<outline text=\"f\" xmlUrl=\"" + std::string(2085, 'u') + "\"/>",
       "xmlUrl is too long and was cut: "},
      {"<category>c</category>", "the element 'category' is not kept"},
      {"<!-- remark -->", "comments are not kept"},
      {"stray", "text between elements is not kept"},
      {feed + "/>",
       "no time in the document (added, modified, lastVisited): a copy gets the current time: "},
      {feed + "><vsm:stat added=\"1\"/></outline>",
       "(modified, lastVisited): a copy gets the current time: "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.outline);
    const Outcome check = Bench(Opml(c.outline)).On("check");
    EXPECT_EQ(check.exitCode, 0) << check.errors;
    EXPECT_THAT(check.out, AllOf(HasSubstr(c.warning), HasSubstr("in.opml: loads; warnings: "),
                                 Not(HasSubstr("would not load"))));
    EXPECT_EQ(Losses(check), std::string_view(c.warning).find(": a copy ") == std::string::npos);
  }
}

/// A collection in an RSS document, with the given channel content.
std::string Rss(const std::string& channel) {
  return "<rss version=\"2.0\" xmlns:vsm=\"v\" xmlns:sx=\"s\" xmlns:dc=\"d\"><channel>" + channel +
         "</channel></rss>";
}

constexpr char kOrdered[] =
    "<title>Mine</title><vsm:action sync=\"true\" ordered=\"true\"/>"
    "<vsm:folder order=\"2\"><title>Sub</title><sx:sync id=\"f\"/></vsm:folder>"
    "<item><title>note</title><vsm:folderref folderid=\"f\" order=\"1\"/>"
    "<vsm:rel type=\"note\"/></item>"
    "<item><title>page</title><link>http://a/?b&amp;c</link><vsm:folderref order=\"1\"/>"
    "<vsm:stat modified=\"1\" unread=\"true\"/><vsm:tags>red green</vsm:tags></item>";

TEST(Tool, ShowsTheItemsOfACollectionInTheirFoldersWithoutGivingThemIdentities) {
  const Bench bench(Rss(kOrdered));
  EXPECT_EQ(bench.On("show").out,
            "[collection] Mine\n"
            "  [item] page  http://a/?b&c  (unread)\n"
            "  [folder] Sub\n"
            "    [item] note  note\n"
            "1 folders, 2 items, 1 unread, 0 flagged\n");
  const Outcome show = bench.On("show --json");
  const auto collection = nlohmann::json::parse(show.out, nullptr, false);
  ASSERT_TRUE(collection.is_object()) << show.out;
  const auto& page = collection["children"][0];
  EXPECT_EQ(page["id"], nullptr);
  EXPECT_EQ(page["tags"], nlohmann::json({"red", "green"}));
}

TEST(Tool, ACopyOfACollectionIsFineAndComesBackByteForByte) {
  const Bench bench(Rss(kOrdered));
  const Outcome check = bench.On("check");
  EXPECT_EQ(Losses(check), 0) << check.out;
  EXPECT_THAT(check.out, HasSubstr("no identity in the document: a copy gets a new one: "));
  EXPECT_EQ(bench.Copy("out.rss").exitCode, 0);
  const std::string first = ReadBytes(bench / "out.rss");
  WriteBytes(bench.file(), first);
  EXPECT_THAT(bench.On("check").out, HasSubstr("in.opml: fine\n"));
  EXPECT_EQ(bench.Copy("out.rss").exitCode, 0);
  EXPECT_EQ(ReadBytes(bench / "out.rss"), first);
}

TEST(Tool, WarnsOfWhatASaveOfACollectionLoses) {
  const struct {
    const char* channel;
    const char* warning;
  } cases[] = {
      {"<language>en</language>", "the element 'language' is not kept: "},
      {"<title>a</title><title>b</title>", "'title' is repeated, and only one of them is kept"},
      {"</channel><channel>", "'channel' is repeated, and only one of them is kept"},
      {"<item><title>i</title><guid>g<b/></guid></item>", "the element 'guid' is not kept: "},
      {"<item><title>i</title><pubDate>p</pubDate></item>",
       "the publication date (pubDate) is not read: "},
      {"<item><title>i</title><vsm:folderref folderid=\"f\"/></item>",
       "an item's folder is not in the document: "},
      {"<item><title>i</title><vsm:rel type=\"film\"/></item>",
       "or would be written differently (vsm:rel type): "},
      {"<item><title>i</title><vsm:rel type=\"note\" href=\"h\"/></item>",
       "relationUrl is lost: i"},
      {"<item><title>i</title><sx:sync deleted=\"true\"/><vsm:build basebuild=\"4\"/></item>",
       "an item that was checked in and then deleted is left out: i"},
      {"<dc:creator>me</dc:creator><item><title>i</title></item>",
       "an empty author becomes the collection's owner: i"},
      {"<vsm:folder><title>o</title><vsm:folder order=\"2\"/>"
       "<sx:sync id=\"o\"/></vsm:folder><item><vsm:folderref folderid=\"o\" order=\"1\"/></item>",
       "the order of pages and folders is lost: o > "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.channel);
    const Outcome check = Bench(Rss(c.channel)).On("check");
    EXPECT_EQ(check.exitCode, 0) << check.errors;
    EXPECT_THAT(check.out, HasSubstr(c.warning));
    EXPECT_EQ(Losses(check), 1) << check.out;
  }
}

TEST(Tool, CopiesWhatTheLibraryWroteByteForByte) {
  const std::string document = OwnDocument();  // saved once, because it contains the current time
  const Bench bench(document);
  const Outcome copy = bench.Copy("out.opml");
  EXPECT_EQ(copy.exitCode, 0) << copy.errors;
  EXPECT_EQ(ReadBytes(bench / "out.opml"), document);
}

TEST(Tool, CopiesAFileOverItself) {
  const Bench bench(Opml("<outline text=\"a\"/>"));
  EXPECT_EQ(bench.Copy("in.opml").exitCode, 0);
  EXPECT_EQ(ReadBytes(bench.file()), SavedOpml(Tree("root(a())")));
}

TEST(Tool, ANoteDoesNotReplaceItsDocument) {
  const std::string document = Opml("<outline text=\"a\"/>");
  const Bench bench(document);
  const std::string in = Quoted(bench.file());
  EXPECT_EQ(RunTool("note " + in + " a " + in).exitCode, 2);
  EXPECT_EQ(ReadBytes(bench.file()), document);
}

TEST(Tool, DateTellsWhatBothReadersAnswer) {
  const Outcome both = RunTool("date \"Sun, 06 Nov 1994 08:49:37 EST\" 1994-11-06");
  EXPECT_EQ(both.exitCode, 0) << both.errors;
  EXPECT_THAT(both.out,
              testing::StartsWith(
                  "Sun, 06 Nov 1994 08:49:37 EST\n"
                  "  GetTime   found      1994-11-06T03:49:37Z    784093777\n"
                  "  ReadDate  found      1994-11-06T13:49:37Z    784129777  zone -05:00, RFC 822\n"
                  "1994-11-06\n"
                  "  GetTime   not found  20"));
  EXPECT_THAT(both.out, HasSubstr("(now)\n"
                                  "  ReadDate  found      1994-11-06T00:00:00Z    784080000  zone "
                                  "unknown, ISO 8601\n"));

  const Outcome none = RunTool("date 1994-11-31 1994");
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_THAT(none.out, HasSubstr("  ReadDate  not found\n"));
}

}  // namespace
}  // namespace vosmere::test
