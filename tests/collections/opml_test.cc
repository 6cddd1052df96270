// The OPML document of a tree of collections, beyond what holds for every document.
#include <functional>

#include "tests/support/document.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"

namespace vosmere::test::opml {

TEST(OpmlWriter, LeavesOutPagesAndWritesTheOwner) {
  const TreePtr tree = Tree("root(@c page)");
  tree->item->SetName(nullptr);
  tree["c"]->item->SetName(nullptr);
  tree->firstChild->item->GetNodeStat()->SetStatTime(1, 2, 3, 7);
  ColctAt(tree->firstChild)->GetColctNetData()->SetOwner(W("A & \"B\""));
  EXPECT_THAT(SavedOpml(tree),
              HasSubstr("<head><title>No name collections</title><vsm:opml version=\"1\" />\r\n"
                        "</head><body><outline text=\"No name\" type=\"rss\" "
                        "xmlUrl=\"about:blank\"><vsm:stat added=\"1\" modified=\"2\" "
                        "lastVisited=\"3\"/>\r\n<vsm:owner>A &amp; &quot;B&quot;</vsm:owner>\r\n"
                        "</outline>\r\n</body>"));
}

/// Opens the protected steps.
class Steps : public CWriteColctTreeOPML {
 public:
  explicit Steps(std::function<void(Steps&)> steps) : steps_(std::move(steps)) {}
  using CWriteColctTreeOPML::FillSync;

 protected:
  bool FillData() override {
    steps_(*this);
    return true;
  }

 private:
  std::function<void(Steps&)> steps_;
};

TEST(OpmlWriter, SyncElementDependsOnTheIdentity) {
  const std::string forty(40, 'u');
  const struct {
    std::string uuid;
    int version;
    std::string written;
  } cases[] = {
      {"u", 2, "<sx:sync id=\"u\" version=\"2\"></sx:sync>"},
      {"u", 0, "<sx:sync id=\"u\"></sx:sync>"},
      {forty, 0, "<sx:sync id=\"" + forty + "\"></sx:sync>"},
      {forty + "u", 2, "<vsm:error uuidlen=\"41\" />"},
      {"", 2, "(not saved)"},
  };
  for (const auto& c : cases) {
    const Wide uuid = W(c.uuid);
    Steps writer([&](Steps& steps) { steps.FillSync(WideView(uuid), c.version); });
    EXPECT_EQ(Saved(writer), c.written);
  }
}

TEST(OpmlWriter, OnlyTheLengthOfTheBasePathCounts) {
  const struct {
    Wide base, library;
    const char *url, *written;
  } cases[] = {
      {W("C:\\a\\"), W("lib"), "C:\\a\\lib\\x.xml", "lib/x.xml"},
      {W("D:/b/"), W("lib"), "C:\\a\\lib\\x.xml", "lib/x.xml"},
      {W("C:\\a\\"), W("lib"), "C:\\a\\Lib\\x.xml", "C:/a/Lib/x.xml"},
      {W("C:\\a\\"), W("lib"), "C:\\a\\lib", "C:/a/lib"},
      {W("C:\\a\\"), W(""), "C:\\a\\x", "x"},
      {nullptr, W("lib"), "C:\\a\\lib\\x", "C:/a/lib/x"},
      {W("C:\\a\\"), nullptr, "C:\\a\\lib\\x", "C:/a/lib/x"},
      {W("longer than the path"), W("lib"), "x", "x"},
  };
  for (const auto& c : cases) {
    const TreePtr tree = Tree("root(@c)");
    ColctAt(tree["c"])->SetUrl(W(std::string(c.url)));
    CWriteColctTreeOPML writer;
    writer.SetTreeRoot(tree);
    writer.SetBasePathAndLibrary(c.base, c.library);
    EXPECT_THAT(Saved(writer), HasSubstr(" xmlUrl=\"" + std::string(c.written) + "\">")) << c.url;
  }
}

TEST(OpmlReader, ReadsWhatIsNeverWritten) {
  const auto address = [](std::size_t length) { return std::string(length, 'x'); };
  for (const std::size_t length : {2084, 2085}) {
    const TreePtr tree =
        ReadOpml("<opml xmlns:sx='s'><outline text='a' type='rss' htmlUrl='http://z/' xmlUrl='" +
                 address(length) + "'><sx:sync deleted='true'/></outline></opml>");
    ASSERT_TRUE(tree);
    const CColctNode& colct = *ColctAt(tree["a"]);
    EXPECT_EQ(Utf8(colct.GetUrl()), length == 2084 ? address(2084) : "about:blank");
    EXPECT_EQ(Utf8(colct.GetRelationUrl()), "http://z/");
    EXPECT_TRUE(colct.IsDeleted());
  }
}

TEST(OpmlReader, VersionCountsOutsideOfOutlinesAndFromZero) {
  const struct {
    const char* body;
    int version;
  } cases[] = {
      {"<vsm:opml version='3'/>", 3},
      {"<vsm:opml version='3'/><vsm:opml version='-1'/>", 3},
      {"<vsm:opml version='3'/><vsm:opml version='0'/>", 0},
      {"<outline text='a'><vsm:opml version='3'/></outline>", 0},
  };
  for (const auto& c : cases) {
    CReadColctTreeOPML reader;
    ASSERT_TRUE(Load(reader, Opml(c.body)));
    EXPECT_EQ(reader.GetOpmlVersion(), c.version) << c.body;
  }
}

TEST(OpmlReader, TracesWhatItSees) {
  const Traces traces;
  ReadOpml(Opml("<vsm:opml version='1'/><outline text='' type='rss'/>"));
  EXPECT_THAT(traces.lines(), ElementsAre("AttributeName=version\n", "AttributeValue=1\n",
                                          "ISFeedATTRValue=rss\n", "Zero length Value of text\n",
                                          "LeaveNode=outline Level=3\n", "m_pOutLineStack=0\n"));
}

TEST(Opml, DifferentObjectsWorkOnDifferentThreads) {
  const std::string document = TestData("collection_tree.opml");
  AtOnce(4, [&](int) {
    for (int round = 0; round < 3; ++round)
      EXPECT_EQ(SavedOpml(ReadOpml(SavedOpml(ReadOpml(document)))), SavedOpml(ReadOpml(document)));
    for (int round = 0; round < 400; ++round)
      EXPECT_FALSE(CReadColctTreeOPML().LoadBSTRXML(W("<opml version='&'/>")));
  });
}

TEST(OpmlReader, OutOfMemoryAmongEntitiesIsAFailedLoadToo) {
  LoadAtEachFailure(
      [] { return std::make_unique<CReadColctTreeOPML>(); },
      "<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE opml [<!ENTITY city 'Z\xFCrich'>"
      "<!ENTITY % p '<!ATTLIST outline type CDATA \"rss\">'>%p;]><opml><body>"
      "<outline text='&city; and &city;'/><vsm:note xmlns:vsm='v'>&city;</vsm:note></body></opml>");
}

TEST(Trees, OfAnyDepthAreWrittenWithoutRecursion) {
  const std::string outline = "<outline text=\"f\"></outline>\r\n";
  const std::string folder =
      "<vsm:folder>\r\n<title>f</title>\r\n<sx:sync id=\"\"></sx:sync></vsm:folder>\r\n" +
      std::string(CBaseNode::kMaxUuidLength, 'i');
  const auto sizes = [](int levels) {
    const TreePtr tree = Deep(levels);
    const std::size_t opml = SavedOpml(tree).size();
    const ColctPtr colct = ColctOf("x()");
    DeleteTree(colct->GetLocRNodeRoot());
    colct->SetLocRNodeRoot(tree);
    const std::size_t rss = SavedRss(colct.get()).size();
    colct->SetLocRNodeRoot(nullptr);
    return std::pair(opml, rss);
  };
  RunOnSmallStack(512 * 1024, [&] {
    const auto [opml, rss] = sizes(1);
    EXPECT_EQ(sizes(30001), std::pair(opml + 30000 * outline.size(), rss + 30000 * folder.size()));
  });
}

}  // namespace vosmere::test::opml
