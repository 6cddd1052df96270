// `vosmere` on a document of every kind, and `vosmere note`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/tool.h"

namespace vosmere::test {
namespace {

using testing::HasSubstr;

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
      {"colct_list.xml", "  [collection] Checked in\n3 collections\n",
       "the version is not read and becomes 1: ", false},
      {"colct_profile.xml", "  [collection] X:\\Other\\b.xml\n", kFine, true},
      {"ftp_sites.xml", "    [address] Home  http://a.example/~ann/\n", kFine, true},
      {"notification.xml", "  parent: News\n  oldParent: Old 'news'\n",
       "the type is not read and becomes UNKNOWN", false},
      {"page_data.xml", "  rootNodeTitle: Root\n", kFine, true},
      {"search_engines.xml", "  [engine] (no name)  web\n2 engines\n",
       "an engine without queryUrl gets the address", false},
      {"tags.xml", "    [tag] t2  (count 2)\n", kFine, true},
      {"toolbars.xml", "  [toolbar] (no name)  (enabled)\n3 toolbars, 2 enabled\n", kFine, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    EXPECT_THAT(RunTool("show " + In(c.file)).out, HasSubstr(c.shown));
    const Outcome check = RunTool("check " + In(c.file));
    EXPECT_EQ(check.exitCode, 0) << check.errors;
    EXPECT_THAT(check.out, HasSubstr(c.checked));
    const TempFolder folder;
    EXPECT_EQ(RunTool("copy " + In(c.file) + ' ' + Quoted(folder / "copy")).exitCode, 0);
    EXPECT_EQ(ReadBytes(folder / "copy") == TestData(c.file), c.comesBackWhole);
    const Outcome again = RunTool("copy - - <" + Quoted(folder / "copy"));
    EXPECT_EQ(again.bytes, ReadBytes(folder / "copy")) << again.errors;
  }
}

TEST(ToolKinds, WhatDoesNotComeBackIsTold) {
  const struct {
    const char* document;
    const char* warning;
  } cases[] = {
      {"<colctitem><item colctid='c' id='i'/><item id='i'>a</item></colctitem>",
       "an entry that lacks an identity is left out: a"},
      {"<colctitem><item colctid='c'>a</item></colctitem>", ": fine"},
      {"<collectionlist><collection><title>a</title><link>b</link><collection/></collection>"
       "</collectionlist>",
       "an element inside another of its kind is moved out of it: "},
      {"<searchEnginePool><searchEngine type=''><stat addDate='1'/></searchEngine>"
       "</searchEnginePool>",
       "added, modified and lastVisited are lost"},
      {"<vsmtags><group name='g'><tag name='t' count='-1'/></group></vsmtags>",
       "count is limited to 0 to 10,000,000: t"},
      {"<ftpsites><site><title>s</title><webaddress name='n'/></site></ftpsites>",
       "a web address without a name or a link is not kept: "},
      {"<ftpsites><site><webaddress name='a&amp;b' link='l'/></site></ftpsites>", ": fine"},
      {"<vsmnotify><item><title>a</title></item><item><title>b</title></item></vsmnotify>",
       "'item' is repeated, and only the last of them is kept"},
      {"<toolbars><toolbar status='disabled' visible='false'><title>b</title></toolbar></toolbars>",
       "visible is lost: b"},
  };
  const TempFolder folder;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.document);
    WriteBytes(folder / "in.xml", c.document);
    EXPECT_THAT(RunTool("check " + Quoted(folder / "in.xml")).out, HasSubstr(c.warning));
  }
}

TEST(ToolNote, ExportsTheItemThatIsMeant) {
  const struct {
    const char* file;
    const char* item;
    const char* heading;  // null if there is no such item
    const char* error;
  } cases[] = {
      {"collection_tree.opml", "Morning", "Morning", ""},
      {"collection_tree.opml", "\"News > Morning\"", "Morning", ""},
      {"collection_tree.opml", "00000000-0000-4000-8000-000000000002", "Daily", ""},
      {"collection.rss", "id-page", "page", ""},
      {"colct_list.xml", "\"Checked in\"", "Checked in", ""},
      {"search_engines.xml", "\"Images <new>\"", "Images <new>", ""},
      {"search_engines.xml", "\"\"", nullptr, "no item has the name or identity"},
      {"collection.rss", "nobody", nullptr, "no item has the name or identity"},
      {"tags.xml", "t1", nullptr, "no item has the name or identity"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.item);
    const TempFolder folder;
    const Outcome note =
        RunTool("note " + In(c.file) + ' ' + c.item + ' ' + Quoted(folder / "n.html"));
    EXPECT_EQ(note.exitCode, c.heading ? 0 : 1);
    EXPECT_THAT(note.errors, HasSubstr(c.error));
    const std::string title = c.heading ? "<title>" + std::string(c.heading) + "</title>" : "";
    EXPECT_THAT(ReadBytes(folder / "n.html"), HasSubstr(title));
    EXPECT_EQ(std::filesystem::exists(folder / "n.html"), c.heading != nullptr);
  }
}

TEST(ToolNote, ANameThatTwoItemsHaveIsNotGuessedAt) {
  const TempFolder folder;
  WriteBytes(
      folder / "in",
      "<opml xmlns:sx='u'><body><outline text='a'><outline text='x'/></outline><outline text='b'>"
      "<outline text='x'><sx:sync id='second'/></outline></outline></body></opml>");
  const std::string note = "note " + Quoted(folder / "in") + ' ';
  const Outcome shared = RunTool(note + "x -");
  EXPECT_EQ(shared.exitCode, 1);
  EXPECT_EQ(shared.out, "");
  EXPECT_THAT(shared.errors,
              HasSubstr("2 items are called 'x'; name one by its folders or its identity: "
                        "a > x (no identity); b > x (second)\n"));
  for (const char* const one : {"\"a > x\" -", "second -"})
    EXPECT_THAT(RunTool(note + one).out, HasSubstr("<title>x</title>")) << one;
}

}  // namespace
}  // namespace vosmere::test
