#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/document.h"
#include "tests/support/platform.h"
#include "vosmere/base/build_number.h"

namespace vosmere::test {
namespace {

using testing::HasSubstr;

CUrlNode* Page(const ColctPtr& colct, const char* name) {
  return static_cast<CUrlNode*>(FindLink(colct->GetLocRNodeRoot(), name)->item);
}

std::string Tags(const CUrlNode& page) {
  const CUrlProp* const prop = page.GetUrlProp();
  return Row(prop ? prop->GetTagsHead() : nullptr,
             [](const CUrlProp::TagList* tag) { return Utf8(tag->data); });
}

std::string Describe(const CBaseNode& item) {
  int checkedIn = 0;
  item.HasCheckedIn(&checkedIn);
  return Utf8(item.GetName()) + '|' + Utf8(item.GetDescription()) + '|' + Utf8(item.GetUUID()) +
         "|v" + std::to_string(item.GetVersion()) + "|b" + std::to_string(item.GetBaseBuild()) +
         "|c" + std::to_string(checkedIn) + (item.IsDeleted() ? "|deleted" : "");
}

/// All that a document keeps of a link's item.
std::string DescribeLink(const RNode* link) {
  std::string text = Describe(*link->item) + "|o" + std::to_string(link->item->GetOrder());
  if (link->type != NT_URL) return text;
  const auto& page = static_cast<const CUrlNode&>(*link->item);
  LONG added = 0, modified = 0, lastVisited = 0;
  page.GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  return text + '|' + std::to_string(added) + ' ' + std::to_string(modified) + ' ' +
         std::to_string(lastVisited) + (page.GetNodeStat()->IsUnread() ? " unread " : " ") +
         std::to_string(page.GetNodeStat()->GetFlag()) + '|' + Utf8(page.GetUrl()) + '|' +
         Utf8(page.GetAuthor()) + "|k" + std::to_string(page.GetItemType()) + '|' +
         Utf8(page.GetRelationUrl()) + "|f" +
         std::to_string(page.GetUrlProp() ? page.GetUrlProp()->GetFileType() : 0) + '|' +
         Tags(page);
}

std::string DescribeColct(const CColctNode& colct) {
  const CColctNetData& net = *colct.GetColctNetData();
  return Describe(colct) + '|' + Utf8(net.GetOwner()) + (net.IsSynced() ? "|synced" : "") +
         (net.IsOrdered() ? "|ordered " : " ") + Shape(colct.GetLocRNodeRoot(), DescribeLink);
}

std::string ShapeOf(const ColctPtr& colct) {
  return colct ? Shape(colct->GetLocRNodeRoot()) : "(none)";
}

/// The golden document, which names the library's version.
std::string Golden() {
  std::string golden = TestData("collection.rss");
  const std::string build = std::to_string(1000 + kBuildNumber).substr(1);
  const std::size_t version = golden.find("0.0.0");
  for (int i = 0; i < 3; ++i) golden[version + 2 * i] = build[i];
  return golden;
}

TEST(Rss, TheGoldenDocumentIsReadWholeAndWrittenByteForByte) {
  const Zone zone("EST5");
  const ColctPtr colct = ReadRss(Golden());
  ASSERT_TRUE(colct);
  EXPECT_EQ(DescribeColct(*colct),
            "Mine & <yours>|日本語 😀|c|v1|b7|c0|Ann \"A\" Other|synced|ordered |||v1|b0|c2|o1("
            "plain|<p>one\ntwo</p>|id-plain|v0|b0|c0|deleted|o1|1 1704110400 3 -3|"
            "http://x/?a=1&b='2'|Bob|k0|(null)|f0| "
            "News|Every day, déjà vu|<n'e\"w&s>|v4|b0|c2|o2("
            "Old||id-Old|v1|b0|c2|o1("
            "note||id-note|v1|b-5|c0|o1|1 1704110400 3 0|zoo/&/a|Ann \"A\" Other|k1|(null)|f0|) "
            "page||id-page|v1|b8|c2|o2|-2147483648 0 2147483647 unread 5|about:blank|"
            "Ann \"A\" Other|k2|http://x/?a&b|f0|news R&D) "
            "file||id-file|v1|b0|c2|o3|1 1704110400 3 0||Ann \"A\" Other|k3|(null)|f1|)");
  EXPECT_EQ(SavedRss(colct.get()), Golden());
  EXPECT_EQ(SavedRss(colct.get()), Golden()) << "the second time";
}

TEST(RssWriter, APlainCollectionHasNoOrderNoActionAndNoVersionsOfFolders) {
  const Zone zone("UTC0");
  const ColctPtr colct = ColctOf("(@ignored f() p)");
  colct->GetColctNetData()->SetOwner(W("me"));
  FindLink(colct->GetLocRNodeRoot(), "f")->item->SetUUID(W("f"));
  Page(colct, "p")->SetUUID(W("p"));
  Page(colct, "p")->GetNodeStat()->SetStatTime(0, 0, 0, 7);
  EXPECT_THAT(SavedRss(colct.get()),
              HasSubstr("</generator>\r\n<dc:creator>me</dc:creator>\r\n"
                        "<sx:sync id=\"c\" version=\"1\"></sx:sync>"
                        "<vsm:folder>\r\n<title>f</title>\r\n<sx:sync id=\"f\"></sx:sync>"
                        "</vsm:folder>\r\n<item><title>p</title>\r\n<link>about:blank</link>\r\n"
                        "<author>me</author>\r\n<pubDate>Thu, 01 Jan 1970 00:00:00 GMT</pubDate>"
                        "\r\n<vsm:stat added=\"0\" modified=\"0\" lastVisited=\"0\"/>\r\n"
                        "<sx:sync id=\"p\" version=\"1\"></sx:sync></item>\r\n</channel>"));
  EXPECT_EQ(Page(colct, "p")->GetOrder(), 3);
}

TEST(RssWriter, LeavesOutWhatIsSettled) {
  const struct {
    int checkedIn;
    bool deleted;
    int build;
    bool onlyUnchecked;
    bool written;
  } cases[] = {
      {2, false, 0, false, true}, {2, true, 0, false, false}, {0, true, 0, false, true},
      {2, false, 5, false, true}, {2, false, 5, true, false}, {2, false, 0, true, true},
      {1, false, 5, true, true},  {0, true, 5, true, true},
  };
  for (const auto& c : cases) {
    const ColctPtr colct = ColctOf("(p)");
    Page(colct, "p")->SetCheckedIn(c.checkedIn);
    Page(colct, "p")->SetAsDeleted(c.deleted);
    Page(colct, "p")->SetBaseBuild(c.build);
    CWriteColctRSS writer;
    writer.SetColctNode(colct.get());
    writer.SetOnlyWriteUnchecked(c.onlyUnchecked);
    const std::string saved = Saved(writer);
    EXPECT_EQ(saved.find("<item>") != saved.npos, c.written) << &c - cases;
    EXPECT_EQ(saved.find(" deleted=\"true\"></sx:sync>") != saved.npos, c.written && c.deleted);
    EXPECT_FALSE(Utf8(Page(colct, "p")->GetUUID()).empty()) << "left out, but identified";
  }
}

TEST(RssWriter, RelationsAndAddressesDependOnTheKind) {
  const struct {
    int kind;
    int file;
    const char* url;
    const char* related;
    const char* written;
  } cases[] = {
      {IT_URL, 0, "", "r", "<item><link></link>\r\n<pubDate>"},
      {IT_NOTE, 0, "", "r", "<item><vsm:rel type=\"note\" /><pubDate>"},
      {IT_NOTE, 0, "z\\&\\b", "", "<link>z/&amp;/b</link>\r\n<vsm:rel type=\"note\" />"},
      {IT_NOTE, 0, "Z\\b", "", "<link>Z\\b</link>"},
      {IT_FILE, 9, "z\\b", "",
       "<link>z\\b</link>\r\n<vsm:rel type=\"file\" subtype=\"unknown\" />"},
      {IT_FILE, FT_XLS, "u", "<r>", "type=\"file\" subtype=\"xls\" href=\"&lt;r&gt;\" /><pubDate>"},
      {IT_WEBPAGE, FT_PDF, "u", "r", "<vsm:rel type=\"webpage\" href=\"r\" /><pubDate>"},
      {IT_WEBPAGE, 0, "u", "", "<vsm:rel type=\"webpage\" /><pubDate>"},
      {4, 0, "u", "r", "<link>u</link>\r\n<pubDate>"},
  };
  for (const auto& c : cases) {
    const ColctPtr colct = ColctOf("(p)");
    CUrlNode* const page = Page(colct, "p");
    page->SetName(nullptr);
    page->SetItemType(static_cast<tagVSMITEMTYPE>(c.kind));
    page->GetUrlProp()->SetFileType(static_cast<tagVSMITEMFILETYPE>(c.file));
    page->SetUrl(W(std::string(c.url)));
    page->SetRelationUrl(W(std::string(c.related)));
    EXPECT_THAT(SavedRss(colct.get()), HasSubstr(c.written));
  }
}

TEST(RssWriter, AnIdentityThatIsTooLongEndsItsItem) {
  const ColctPtr colct = ColctOf("(p)");
  Page(colct, "p")->SetBaseBuild(1);
  std::fill_n(Page(colct, "p")->GetUUID(), 37, WChar{'u'});
  std::fill_n(colct->GetUUID(), 40, WChar{'c'});
  const std::string saved = SavedRss(colct.get());
  EXPECT_THAT(saved,
              HasSubstr("/>\r\n<vsm:error uuidlen=\"37\" /></item>\r\n</channel>\r\n</rss>"));
  EXPECT_THAT(saved,
              HasSubstr("<vsm:error uuidlen=\"40\" /><sx:sync id=\"" + std::string(40, 'c')));
}

TEST(RssWriter, AnyLinkOrNoneMayStandForTheLocalRoot) {
  EXPECT_EQ(SavedRss(nullptr), "(not saved)");
  const ColctPtr colct = ColctOf("(f(g(p)) q)");
  CWriteColctRSS part, channel;
  part.SetFolderRNode(FindLink(colct->GetLocRNodeRoot(), "f"));
  EXPECT_EQ(ShapeOf(ReadRss(Saved(part))), "(g(p))");
  channel.SetColctNode(colct.get());
  channel.SetFolderRNode(nullptr);
  EXPECT_EQ(ShapeOf(ReadRss(Saved(channel))), "()");
}

std::string Item(const std::string& name, const std::string& reference = "") {
  return "<item><title>" + name + "</title>" + reference + "</item>";
}
std::string In(const std::string& id) {
  return "<vsm:folderref folderid='" + id + "'/>";
}
std::string At(const std::string& order) {
  return "<vsm:folderref order='" + order + "'/>";
}
std::string Folder(const std::string& name, const std::string& id, const std::string& rest = "") {
  return "<vsm:folder><title>" + name + "</title><sx:sync id='" + id + "'/>" + rest +
         "</vsm:folder>";
}

TEST(RssReader, ItemsGoIntoTheFoldersThatTheyName) {
  const std::string f36(36, 'f');
  const struct {
    std::string channel;
    const char* shape;
  } cases[] = {
      {Item("a", In("f")) + Folder("F", "f") + Item("b", In("f")), "(F(a b))"},
      {Folder("F", "f", Folder("G", "g")) + Item("a", In("g")) + Item("b"), "(F(G(a)) b)"},
      {Folder("F", "f") + Folder("G", "f") + Item("a", In("f")), "(F(a) G())"},
      {Folder("F", "f") + Item("a", In("x")) + Item("b", In("")), "(F() a b)"},
      {Folder("F", "") + Item("a", In("")), "(F() a)"},
      {Folder("F", f36 + "g") + Item("a", In(f36 + "h")), "(F(a))"},
      {Item("a", At("2")) + Item("b") + Item("c", At("1")) + Item("d", At("2")) +
           Item("e", At("-1")) + Item("f", At("99999999999")) + "<vsm:folder order='0'/>",
       "(e () c a d f b)"},
  };
  for (const auto& c : cases) EXPECT_EQ(ShapeOf(ReadRss(Rss(c.channel))), c.shape) << c.channel;
}

TEST(RssReader, ElementsCountOnceAndInTheirPlace) {
  const struct {
    const char* channel;
    const char* read;
  } cases[] = {
      {"<title>a</title><title>b</title><image><title>c</title></image>", "a|||v1|b0|c2|(null) "},
      {"<vsm:stat flag='1'/><author>x</author><vsm:action sync='TRUE' ordered='1'/>",
       "|||v1|b0|c2|(null) "},
      {"<vsm:action ordered='true'/><vsm:action sync='true'/><dc:creator/>",
       "|||v1|b0|c2||ordered "},
      {"<sx:sync version=' 3x' id='u'/><sx:sync id='w' deleted='true'/>", "||u|v3|b0|c2|(null) "},
      {"<vsm:build basebuild='4' checkedin='0'/>", "|||v1|b4|c2|(null) "},
      {"<vsm:build checkedin='false'/><sx:sync deleted='true'/>", "|||v0|b0|c0|deleted|(null) "},
  };
  for (const auto& c : cases) {
    const ColctPtr colct = ReadRss(Rss(c.channel));
    ASSERT_TRUE(colct) << c.channel;
    EXPECT_EQ(DescribeColct(*colct), c.read + std::string("|||v1|b0|c2|o1()")) << c.channel;
  }
  const ColctPtr colct = ReadRss(Rss(
      "<item><link>l</link><xmlUrl>x</xmlUrl><link>m</link><vsm:tags>a,A b</vsm:tags>"
      "<vsm:tags>c</vsm:tags><x><title>t</title></x><vsm:folder><title>f</title></vsm:folder>"
      "<vsm:rel href='h' subtype='pdf' type='video'/><vsm:stat added='1' modified='2' "
      "lastVisited='3' unread='True' flag='4'/></item><item><xmlUrl>y</xmlUrl></item>"
      "<item><xmlUrl>x</xmlUrl><link>l</link><vsm:rel type='file' subtype='PDF'/></item><item/>"));
  ASSERT_TRUE(colct);
  RNode* const first = colct->GetLocRNodeRoot()->firstChild;
  EXPECT_EQ(DescribeLink(first), "|||v1|b0|c2|o1|1 2 3 4|l|(null)|k0|h|f1|a b");
  EXPECT_EQ(Utf8(static_cast<CUrlNode*>(first->next->item)->GetUrl()), "y");
  EXPECT_THAT(DescribeLink(first->next->next), HasSubstr("|l|(null)|k3|(null)|f0|"));
  EXPECT_THAT(DescribeLink(first->prev), HasSubstr("|about:blank|"));
}

TEST(RssReader, ReadsWhatOtherProgramsWrite) {
  const ColctPtr colct = ReadRss(
      "<?xml version='1.0' encoding='ISO-8859-1'?><rss version='2.0'>\n<channel>"
      "<title>F\xE9</title><link>http://x/</link><image><title>i</title></image>\n<item>"
      "<guid>g</guid><title><![CDATA[A & B]]></title><link>http://x/1</link>"
      "<description>&lt;b&gt;</description></item></channel>\n"
      "<channel><item/></channel></rss>");
  ASSERT_TRUE(colct);
  EXPECT_EQ(Utf8(colct->GetName()) + ShapeOf(colct), "Fé(A & B)");
  EXPECT_THAT(DescribeLink(colct->GetLocRNodeRoot()->firstChild),
              testing::AllOf(HasSubstr("A & B|<b>|"), HasSubstr("|http://x/1|")));
}

TEST(RssReader, AnotherRootLoadsAndGivesNoCollection) {
  CReadBkmarkXML reader;
  ASSERT_TRUE(Load(reader, Rss("")));
  const Traces traces;
  EXPECT_TRUE(Load(reader, "<rdf><channel/></rdf>"));
  EXPECT_EQ(reader.DetachColctNode(), nullptr);
  EXPECT_FALSE(ReadRss("<rss/>"));
  EXPECT_TRUE(ReadRss(Rss("<sx:sync id=''/>")));
  EXPECT_THAT(traces.lines(), testing::ElementsAre("Element Name=rdf\n", "Empty UUID id\n"));
}

TEST(RssReader, ACollectionStaysUntilItIsTakenOrTheNextOneIsRead) {
  CReadBkmarkXML reader;
  ASSERT_TRUE(Load(reader, Rss(Item("a"))));
  ASSERT_TRUE(Load(reader, Rss(Item("b"))));
  EXPECT_FALSE(Load(reader, "<rss><channel><item/>"));
  EXPECT_EQ(ShapeOf(ColctPtr(reader.DetachColctNode())), "(b)");
  EXPECT_EQ(reader.DetachColctNode(), nullptr);
}

TEST(Rss, DeepTreesAreWrittenWithoutRecursion) {
  constexpr int kLevels = 200000;
  const ColctPtr colct = ColctOf("()");
  RNode* parent = colct->GetLocRNodeRoot();
  for (int i = 0; i < kLevels; ++i) {
    RNode* const folder = NewLink(NT_FOLDER, "");
    folder->item->SetUUID(W("f"));
    RNTool::InsertAsChild(parent, folder);
    parent = folder;
  }
  const std::string folder = "<vsm:folder>\r\n<sx:sync id=\"f\"></sx:sync></vsm:folder>\r\n";
  EXPECT_EQ(SavedRss(colct.get()).size(),
            SavedRss(ColctOf("()").get()).size() + folder.size() * kLevels);
}

TEST(Rss, NestsAsDeepAsTheParserDoesOnASmallStack) {
  RunOnSmallStack(512 * 1024, [] {
    for (const int levels : {200, 1000, 1100, 100000}) {
      std::string folders, ends;
      for (int i = 0; i < levels; ++i) folders += "<vsm:folder>", ends += "</vsm:folder>";
      const ColctPtr colct = ReadRss(Rss(folders + ends));
      EXPECT_TRUE(colct || levels > kLevelsThatLoad) << levels;
      EXPECT_TRUE(!colct || levels <= 1024) << levels;
    }
  });
}

TEST(RssReader, OutOfMemoryIsAFailedLoadThatLosesNothing) {
  LoadAtEachFailure<CReadBkmarkXML>(Golden());
}

}  // namespace
}  // namespace vosmere::test
