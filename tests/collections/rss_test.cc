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

TEST(RssWriter, DatesNameTheZone) {
  for (const auto& [zone, time] : {std::pair("UTC0", "00:00:00 GMT"),
                                   {"PST8", "16:00:00 +0800"},
                                   {"CST-8", "08:00:00 -0800"}}) {
    const Zone in(zone);
    const ColctPtr colct = ColctOf("(p)");
    Page(colct, "p")->GetNodeStat()->SetStatTime(0, 0, 0, 7);
    EXPECT_THAT(SavedRss(colct.get()), HasSubstr(time + std::string("</pubDate>\r\n")));
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
