// `vosmere` on a document of every kind, and `vosmere note`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <string>

#include "tests/support/files.h"

namespace vosmere::test {
namespace {

using testing::HasSubstr;

std::string Quoted(std::filesystem::path path) {
  return '"' + path.make_preferred().string() + '"';
}

/// Runs the tool in a folder, which gets its output.
int RunTool(const TempFolder& folder, std::initializer_list<std::string> arguments) {
  std::string command = "cd . && " + Quoted(VOSMERE_TOOL);
  for (const std::string& argument : arguments) command += ' ' + argument;
  const int status = std::system(
      (command + " >" + Quoted(folder / "out") + " 2>" + Quoted(folder / "err")).c_str());
  return status > 255 ? status / 256 : status;
}

std::string In(const std::string& name) {
  return Quoted(std::filesystem::path(VOSMERE_TEST_DATA) / name);
}

TEST(ToolKinds, EveryStoredDocumentIsKnown) {
  constexpr const char* kFine = ": fine";
  const struct {
    const char* file;
    const char* shown;
    const char* checked;
    bool comesBackWhole;  // byte for byte
  } cases[] = {
      {"colct_item_ids.xml", "  [item] (no name)  c2  i2\n2 items\n", kFine, true},
      {"colct_list.xml", "  [collection] Checked in  about:blank\n3 collections\n",
       "the version is not read and comes back as 1: News", false},
      {"colct_profile.xml", "  [collection] X:\\Other\\b.xml\n", kFine, true},
      {"ftp_sites.xml", "    [address] Home  http://a.example/~ann/\n", kFine, true},
      {"notification.xml", "  parent: News\n  oldParent: Old 'news'\n",
       "the type is not read and comes back as UNKNOWN", false},
      {"page_data.xml", "  rootNodeTitle: Root\n", kFine, true},
      {"search_engines.xml", "  [engine] (no name)  about:blank  web\n2 engines\n",
       "an engine without queryUrl comes back", false},
      {"tags.xml", "    [tag] t2  (count 2)\n", kFine, true},
      {"toolbars.xml", "  [toolbar] (no name)  (enabled)\n3 toolbars, 2 enabled\n", kFine, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    const TempFolder folder;
    const auto out = [&] {
      std::ifstream file(folder / "out");  // as text
      return std::string(std::istreambuf_iterator<char>(file), {});
    };
    EXPECT_EQ(RunTool(folder, {"show", In(c.file)}), 0);
    EXPECT_THAT(out(), HasSubstr(c.shown));
    EXPECT_EQ(RunTool(folder, {"check", In(c.file)}), 0);
    EXPECT_THAT(out(), HasSubstr(c.checked));
    EXPECT_EQ(RunTool(folder, {"copy", In(c.file), Quoted(folder / "copy")}), 0);
    EXPECT_EQ(ReadBytes(folder / "copy") == TestData(c.file), c.comesBackWhole);
    EXPECT_EQ(RunTool(folder, {"copy", Quoted(folder / "copy"), Quoted(folder / "again")}), 0);
    EXPECT_EQ(ReadBytes(folder / "again"), ReadBytes(folder / "copy"));
  }
}

TEST(ToolKinds, WhatDoesNotComeBackIsTold) {
  const struct {
    const char* document;
    const char* warning;
  } cases[] = {
      {"<colctitem><item colctid='c' id='i'/><item id='i'>a</item></colctitem>",
       "an entry without both identities is left out: a"},
      {"<colctitem><item colctid='c'>a</item></colctitem>", ": fine"},
      {"<collectionlist><collection><title>a</title><link>b</link><collection/></collection>"
       "</collectionlist>",
       "what stands inside another of its kind moves out of it: a"},
      {"<searchEnginePool><searchEngine type=''><stat addDate='1'/></searchEngine>"
       "</searchEnginePool>",
       "the times of an engine are not kept"},
      {"<vsmtags><group name='g'><tag name='t' count='-1'/></group></vsmtags>",
       "count does not come back: g > t"},
      {"<ftpsites><site><title>s</title><webaddress name='n'/></site></ftpsites>",
       "a web address without a name or a link is not kept: s"},
      {"<ftpsites><site><webaddress name='a&amp;b' link='l'/></site></ftpsites>",
       "name holds '&', which is written as it is"},
      {"<vsmnotify><item><title>a</title></item><item><title>b</title></item></vsmnotify>",
       "'item' is repeated, and only one of them is kept"},
      {"<toolbars><toolbar status='disabled' visible='false'><title>b</title></toolbar></toolbars>",
       "visible does not come back: b"},
  };
  const TempFolder folder;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.document);
    WriteBytes(folder / "in.xml", c.document);
    EXPECT_EQ(RunTool(folder, {"check", Quoted(folder / "in.xml")}), 0);
    EXPECT_THAT(ReadBytes(folder / "out"), HasSubstr(c.warning));
  }
}

TEST(ToolNote, ExportsTheFirstItemOfANameOrIdentity) {
  const struct {
    const char* file;
    const char* item;
    const char* heading;  // null when there is no such item
  } cases[] = {
      {"collection_tree.opml", "Morning", "Morning"},
      {"collection_tree.opml", "00000000-0000-4000-8000-000000000002", "Daily"},
      {"collection.rss", "id-page", "page"},
      {"colct_list.xml", "\"Checked in\"", "Checked in"},
      {"search_engines.xml", "\"Images <new>\"", "Images <new>"},
      {"search_engines.xml", "\"\"", nullptr},
      {"collection.rss", "nobody", nullptr},
      {"tags.xml", "t1", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.item);
    const TempFolder folder;
    const int exitCode = RunTool(folder, {"note", In(c.file), c.item, Quoted(folder / "n.html")});
    EXPECT_EQ(exitCode, c.heading ? 0 : 1);
    if (c.heading) {
      EXPECT_THAT(ReadBytes(folder / "n.html"),
                  HasSubstr("<title>" + std::string(c.heading) + "</title>"));
    } else {
      EXPECT_THAT(ReadBytes(folder / "err"), HasSubstr("no item has the name or identity"));
      EXPECT_FALSE(std::filesystem::exists(folder / "n.html"));
    }
  }
}

}  // namespace
}  // namespace vosmere::test
