// The RSS document of a collection, beyond what holds for every document.
#include <algorithm>

#include "tests/support/document.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"

namespace vosmere::test::rss {

CUrlNode* Page(const ColctPtr& colct, const char* name) {
  return static_cast<CUrlNode*>(FindLink(colct->GetLocRNodeRoot(), name)->item);
}

std::string ShapeOf(const ColctPtr& colct) {
  return colct ? Shape(colct->GetLocRNodeRoot()) : "(none)";
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

TEST(RssReader, TracesAnEmptyIdentity) {
  const Traces traces;
  EXPECT_TRUE(ReadRss(Rss("<sx:sync id=''/>")));
  EXPECT_FALSE(ReadRss("<rss/>"));
  EXPECT_THAT(traces.lines(), ElementsAre("Empty UUID id\n"));
}

}  // namespace vosmere::test::rss
