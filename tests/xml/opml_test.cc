#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

#include "tests/support/document.h"
#include "tests/support/platform.h"
#include "vosmere/xml/namespaces.h"

namespace vosmere::test {
namespace {

const char kStart[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<opml version=\"2.0\" xmlns:vsm=\"http://www.vosmere.example/schema/vsm\""
    " xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
    " xmlns:sx=\"http://www.microsoft.com/schemas/rss/sse\">\r\n";

/// All that stands between the head and the end of a saved tree.
std::string BodyOf(RNode* root) {
  const std::string saved = SavedOpml(root);
  const std::string from = "</head><body>", to = "</body></opml>";
  const std::size_t begin = saved.find(from) + from.size();
  return saved.substr(begin, saved.size() - begin - to.size());
}

TreePtr Colct(const char* url = "feeds\\a.xml") {
  TreePtr tree = Tree("root(@c)");
  ColctAt(tree["c"])->SetUrl(W(std::string(url)));
  tree["c"]->item->GetNodeStat()->SetStatTime(1, 2, 3, 7);
  return tree;
}

/// The fullest tree, as the golden document has it.
TreePtr FullTree() {
  TreePtr tree = Tree("My_reading(News(Morning() @Daily) @Comics ignored)");
  tree->item->SetName(W("My <reading> & more"));
  tree->item->SetUUID(W("00000000-0000-4000-8000-000000000001"));
  tree["News"]->item->SetDescription(W("Every day, déjà vu"));
  tree["News"]->item->SetUUID(W("n\"<&>'"));
  tree["Morning"]->item->SetUUID(W("m"));
  tree["Morning"]->item->SetVersion(0);
  CColctNode* const daily = ColctAt(tree["Daily"]);
  daily->SetUrl(W("C:\\Users\\me\\Library\\news\\daily.xml"));
  daily->SetDescription(W(u"\x65E5\x672C\x8A9E \xD83D\xDE00"));
  daily->SetUUID(W("00000000-0000-4000-8000-000000000002"));
  daily->SetVersion(-2147483647 - 1);
  daily->GetNodeStat()->SetStatTime(-2147483647 - 1, 2147483647, 0, 7);
  daily->GetNodeStat()->SetFlag(-1);
  daily->GetNodeStat()->MarkAsUnread(true);
  daily->GetColctNetData()->SetOwner(W("Ann & \"Bob\""));
  daily->GetColctNetData()->SetColctExpandState(true);
  CColctNode* const comics = ColctAt(tree["Comics"]);
  comics->SetName(nullptr);
  comics->GetNodeStat()->SetStatTime(1, 2, 3, 7);
  return tree;
}

TEST(OpmlWriter, WritesTheGoldenDocument) {
  CWriteColctTreeOPML writer;
  const TreePtr tree = FullTree();
  writer.SetTreeRoot(tree);
  writer.SetBasePathAndLibrary(W("C:\\Users\\me\\"), W("Library"));
  EXPECT_EQ(Saved(writer), TestData("collection_tree.opml"));
}

TEST(OpmlWriter, WritesAnEmptyTree) {
  const TreePtr tree = Tree("root()");
  EXPECT_EQ(SavedOpml(tree),
            kStart + std::string("<head><title>root</title><vsm:opml version=\"1\" />"
                                 "\r\n</head><body></body></opml>"));
}

TEST(OpmlWriter, WithoutATreeTheDocumentIsEmpty) {
  CWriteColctTreeOPML writer;
  EXPECT_EQ(Saved(writer), "(not saved)");
  EXPECT_EQ(writer.LastError().fault, DocumentFault::kNothingToWrite);
}

TEST(OpmlWriter, NamesTheUnnamed) {
  const TreePtr tree = Tree("root(f(@c))");
  tree->item->SetName(nullptr);
  tree["f"]->item->SetName(W(""));
  const std::string saved = SavedOpml(tree);
  EXPECT_THAT(saved, testing::HasSubstr("<title>No name collections</title>"));
  EXPECT_THAT(saved, testing::HasSubstr("<outline text=\"No name\"><outline text=\"c\""));
}

TEST(OpmlWriter, CutsNamesAt199) {
  for (const int length : {199, 200, 250}) {
    const TreePtr tree = Tree("root(f())");
    tree["f"]->item->SetName(Repeated(length));
    EXPECT_EQ(BodyOf(tree), "<outline text=\"" + std::string(199, 'x') + "\"></outline>\r\n");
  }
}

TEST(OpmlWriter, OutlineValuesAreNotEscaped) {
  const TreePtr tree = Tree("root(f())");
  tree["f"]->item->SetDescription(W("'&'"));
  tree["f"]->item->SetName(W("a \"b\" <&>"));
  EXPECT_EQ(BodyOf(tree), "<outline text=\"a \"b\" <&>\" description=\"'&'\"></outline>\r\n");
  EXPECT_FALSE(ReadOpml(SavedOpml(tree)));
}

TEST(OpmlWriter, StatisticsHaveFourForms) {
  const struct {
    int flag;
    bool unread;
    const char* form;
  } cases[] = {
      {0, false, "lastVisited=\"3\"/>\r\n"},
      {0, true, "lastVisited=\"3\" unread=\"true\" />\r\n"},
      {5, true, "lastVisited=\"3\" flag=\"5\" unread=\"true\" />\r\n"},
      {5, false, "lastVisited=\"3\"  flag=\"5\" />\r\n"},
  };
  for (const auto& c : cases) {
    const TreePtr tree = Colct();
    tree["c"]->item->GetNodeStat()->SetFlag(c.flag);
    tree["c"]->item->GetNodeStat()->MarkAsUnread(c.unread);
    EXPECT_EQ(BodyOf(tree),
              "<outline text=\"c\" type=\"rss\" xmlUrl=\"feeds/a.xml\">"
              "<vsm:stat added=\"1\" modified=\"2\" " +
                  std::string(c.form) + "</outline>\r\n");
  }
}

/// Opens the protected steps.
class Steps : public CWriteColctTreeOPML {
 public:
  explicit Steps(std::function<void(Steps&)> steps) : steps_(std::move(steps)) {}
  using CWriteColctTreeOPML::FillBoolean;
  using CWriteColctTreeOPML::FillSync;

 protected:
  bool FillData() override {
    steps_(*this);
    return true;
  }

 private:
  std::function<void(Steps&)> steps_;
};

TEST(OpmlWriter, BooleansAreWords) {
  Steps writer([](Steps& steps) {
    steps.FillBoolean(true, "<a>", "</a>\r\n", 3);
    steps.FillBoolean(false, "<a>", "</a>\r\n", 3);
  });
  EXPECT_EQ(Saved(writer), "<a>true</a>\r\n<a>false</a>\r\n");
}

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
    const char* base;
    const char* library;
    const char* url;
    const char* written;
  } cases[] = {
      {"C:\\a\\", "lib", "C:\\a\\lib\\x.xml", "lib/x.xml"},
      {"D:/b/", "lib", "C:\\a\\lib\\x.xml", "lib/x.xml"},
      {"C:\\a\\", "lib", "C:\\a\\Lib\\x.xml", "C:/a/Lib/x.xml"},
      {"C:\\a\\", "lib", "C:\\a\\lib", "C:/a/lib"},
      {"C:\\a\\", "", "C:\\a\\x", "x"},
      {nullptr, "lib", "C:\\a\\lib\\x", "C:/a/lib/x"},
      {"C:\\a\\", nullptr, "C:\\a\\lib\\x", "C:/a/lib/x"},
      {"longer than the path", "lib", "x", "x"},
  };
  for (const auto& c : cases) {
    const TreePtr tree = Colct(c.url);
    CWriteColctTreeOPML writer;
    writer.SetTreeRoot(tree);
    writer.SetBasePathAndLibrary(c.base ? W(std::string(c.base)) : Wide(nullptr),
                                 c.library ? W(std::string(c.library)) : Wide(nullptr));
    EXPECT_THAT(Saved(writer), testing::HasSubstr(" xmlUrl=\"" + std::string(c.written) + "\">"))
        << c.url;
  }
}

TEST(OpmlReader, RoundTripLosesOwnersAndDeletedMarksOnly) {
  TreePtr tree = FullTree();
  tree["News"]->item->SetDescription(W("plain"));
  tree["News"]->item->SetUUID(W("n"));
  const TreePtr back = ReadOpml(SavedOpml(tree));
  ASSERT_TRUE(back);
  EXPECT_EQ(Shape(back), "My <reading> & more(News(Morning() @Daily) @No name)");
  CColctNode* const daily = ColctAt(back["Daily"]);
  EXPECT_EQ(Utf8(daily->GetUrl()), "C:\\Users\\me\\Library\\news\\daily.xml");
  EXPECT_EQ(Utf8(daily->GetDescription()), "日本語 😀");
  EXPECT_EQ(Utf8(daily->GetUUID()), "00000000-0000-4000-8000-000000000002");
  EXPECT_EQ(daily->GetVersion(), -2147483647 - 1);
  LONG added = 0, modified = 0, lastVisited = 0;
  daily->GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  EXPECT_EQ(added, -2147483647 - 1);
  EXPECT_EQ(modified, 2147483647);
  EXPECT_EQ(lastVisited, 0);
  EXPECT_EQ(daily->GetNodeStat()->GetFlag(), -1);
  EXPECT_TRUE(daily->GetNodeStat()->IsUnread());
  EXPECT_TRUE(daily->GetColctNetData()->GetColctExpandState());
  EXPECT_EQ(daily->GetColctNetData()->GetOwner(), nullptr);
  EXPECT_EQ(Utf8(back["Morning"]->item->GetUUID()), "m");
  EXPECT_EQ(back["Morning"]->item->GetVersion(), 1);
}

TEST(OpmlReader, TellsCollectionsFromFolders) {
  const struct {
    const char* outline;
    const char* shape;
  } cases[] = {
      {"<outline text='a' type='rss'/>", "root(@a)"},
      {"<outline text='a' xmlUrl='x'/>", "root(@a)"},
      {"<outline text='a' xmlUrl=''/>", "root(@a)"},
      {"<outline text='a' type='link' xmlUrl='x'/>", "root(a())"},
      {"<outline text='a' type='RSS' xmlUrl='x'/>", "root(a())"},
      {"<outline text='a' type='' xmlUrl='x'/>", "root(a())"},
      {"<outline text='a'/>", "root(a())"},
      {"<outline text='a' title='b'/>", "root(b())"},
      {"<outline title='b' text='a'/>", "root(a())"},
      {"<outline Text='a' text=''/>", "root(())"},
      {"<outline text='c' type='rss'><outline text='f'><outline text='g'/></outline></outline>"
       "<outline text='z'/>",
       "root(@c f(g()) z())"},
      {"<x><outline text='a'><y><outline text='b'/></y></outline></x>", "root(a(b()))"},
      {"<outline text='a'><title>no</title></outline>", "root(a())"},
      {"<outline type='rss' text='a'><title>no</title></outline>", "root(@a)"},
      {"<title>late</title>", "late()"},
      {"<title>outer<title>inner</title></title>", "inner()"},
      {"<opml><outline text='a'/></opml>", "root(a())"},
      {"<!-- c --><?p i?><![CDATA[<outline text='no'/>]]>&lt;outline/&gt;", "root()"},
  };
  for (const auto& c : cases) {
    const TreePtr tree = ReadOpml(Opml(c.outline));
    ASSERT_TRUE(tree) << c.outline;
    EXPECT_EQ(Shape(tree), c.shape) << c.outline;
  }
}

TEST(OpmlReader, ExtensionElementsDescribeTheInnermostOutline) {
  const TreePtr tree =
      ReadOpml(Opml("<sx:sync id='r' version='x'/><vsm:stat flag='1'/><vsm:view expand='true'/>"
                    "<outline text='f'><vsm:stat flag='2' unread='True' added='5 apples'/>"
                    "<vsm:view expand='true'/><sx:sync id='f' deleted='true' version=' +7x'/>"
                    "<outline text='c' type='rss'><vsm:view expand='yes'/></outline>"
                    "<sx:sync id='' deleted='1'/></outline>"));
  ASSERT_TRUE(tree);
  EXPECT_EQ(Utf8(tree->item->GetUUID()), "r");
  EXPECT_EQ(tree->item->GetVersion(), 0);
  EXPECT_EQ(tree->item->GetNodeStat()->GetFlag(), 0);
  CBaseNode* const folder = tree["f"]->item;
  EXPECT_EQ(Utf8(folder->GetUUID()), "");
  EXPECT_EQ(folder->GetVersion(), 7);
  EXPECT_TRUE(folder->IsDeleted());
  EXPECT_EQ(folder->GetNodeStat()->GetFlag(), 2);
  EXPECT_FALSE(folder->GetNodeStat()->IsUnread());
  LONG added = 0;
  folder->GetNodeStat()->GetStatTime(&added, nullptr, nullptr);
  EXPECT_EQ(added, 5);
  EXPECT_FALSE(ColctAt(tree["c"])->GetColctNetData()->GetColctExpandState());
}

TEST(OpmlReader, EverySlashOfAnAddressBecomesABackslash) {
  const TreePtr tree =
      ReadOpml(Opml("<outline text='a' type='rss' xmlUrl='http://x/y' htmlUrl='http://z/'/>"
                    "<outline text='b' type='rss' xmlUrl='" +
                    std::string(2085, 'x') + "'/>"));
  ASSERT_TRUE(tree);
  EXPECT_EQ(Utf8(ColctAt(tree["a"])->GetUrl()), "http:\\\\x\\y");
  EXPECT_EQ(Utf8(ColctAt(tree["a"])->GetRelationUrl()), "http://z/");
  EXPECT_EQ(Utf8(ColctAt(tree["b"])->GetUrl()), "about:blank");
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
      {"<vsm:opml version='99999999999999999999999999999'/>", 2147483647},
  };
  for (const auto& c : cases) {
    CReadColctTreeOPML reader;
    ASSERT_TRUE(Load(reader, Opml(c.body)));
    EXPECT_EQ(reader.GetOpmlVersion(), c.version) << c.body;
  }
}

TEST(OpmlReader, AnotherRootLoadsAndGivesNoTree) {
  CReadColctTreeOPML reader;
  ASSERT_TRUE(Load(reader, Opml("<outline text='a'/>")));
  const Traces traces;
  EXPECT_TRUE(Load(reader, "<rss><opml/></rss>"));
  EXPECT_FALSE(TreePtr(reader.DetachTreeRoot()));
  EXPECT_THAT(traces.lines(), testing::ElementsAre("Element Name=rss\n"));
}

TEST(OpmlReader, TracesWhatItSees) {
  const Traces traces;
  ReadOpml(Opml("<vsm:opml version='1'/><outline text='' type='rss'/>"));
  EXPECT_THAT(traces.lines(),
              testing::ElementsAre("AttributeName=version\n", "AttributeValue=1\n",
                                   "ISFeedATTRValue=rss\n", "Zero length Value of text\n",
                                   "LeaveNode=outline Level=3\n", "m_pOutLineStack=0\n"));
}

TEST(OpmlReader, AFailedLoadKeepsTheEarlierTree) {
  CReadColctTreeOPML reader;
  ASSERT_TRUE(Load(reader, Opml("<outline text='a'/>")));
  EXPECT_FALSE(Load(reader, "<opml><body><outline text='b'/>"));
  const TreePtr tree(reader.DetachTreeRoot());
  ASSERT_TRUE(tree);
  EXPECT_EQ(Shape(tree), "root(a())");
  EXPECT_FALSE(TreePtr(reader.DetachTreeRoot()));
}

TEST(OpmlReader, ASecondLoadReplacesATreeThatWasNotTaken) {
  CReadColctTreeOPML reader;
  ASSERT_TRUE(Load(reader, Opml("<outline text='a'/>")));
  ASSERT_TRUE(Load(reader, Opml("<outline text='b'/>")));
  EXPECT_EQ(Shape(TreePtr(reader.DetachTreeRoot())), "root(b())");
}

TEST(Opml, DeepTreesAreWrittenWithoutRecursion) {
  constexpr int kLevels = 1000000;
  const TreePtr tree = Folder("root");
  RNode* parent = tree;
  for (int i = 0; i < kLevels; ++i) {
    RNode* const folder = Folder("f").release();
    RNTool::InsertAsChild(parent, folder);
    parent = folder;
  }
  const std::string start = "<outline text=\"f\">", end = "</outline>\r\n";
  EXPECT_EQ(SavedOpml(tree).size(),
            SavedOpml(Tree("root()")).size() + std::size_t{kLevels} * (start.size() + end.size()));
}

TEST(Opml, NestsAsDeepAsTheParserDoesOnASmallStack) {
  const auto nested = [](int levels) {
    std::string outlines;
    for (int i = 0; i < levels; ++i) outlines += "<outline text='f'>";
    for (int i = 0; i < levels; ++i) outlines += "</outline>";
    return Opml(outlines);
  };
  RunOnSmallStack(512 * 1024, [&] {
    for (const int levels : {200, 1000, 1100, 1000000}) {
      CReadColctTreeOPML reader;
      const bool loaded = Load(reader, nested(levels));
      const TreePtr tree(reader.DetachTreeRoot());
      if (levels <= kLevelsThatLoad) {
        EXPECT_TRUE(loaded) << levels;
      } else if (levels > 1024) {
        EXPECT_FALSE(loaded) << levels;
        EXPECT_EQ(reader.LastError().fault, DocumentFault::kTooDeep) << levels;
      }
      EXPECT_EQ(tree != nullptr, loaded);
    }
  });
}

TEST(Opml, DifferentObjectsWorkOnDifferentThreads) {
  const std::string document = TestData("collection_tree.opml");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int round = 0; round < 10; ++round)
        EXPECT_EQ(SavedOpml(ReadOpml(SavedOpml(ReadOpml(document)))),
                  SavedOpml(ReadOpml(document)));
    });
  for (std::thread& thread : threads) thread.join();
}

TEST(OpmlReader, OutOfMemoryIsAFailedLoadThatLosesNothing) {
  LoadAtEachFailure<CReadColctTreeOPML>(TestData("collection_tree.opml"));
  LoadAtEachFailure<CReadColctTreeOPML>(
      "<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE opml [<!ENTITY city 'Z\xFCrich'>"
      "<!ENTITY % p '<!ATTLIST outline type CDATA \"rss\">'>%p;]><opml><body>"
      "<outline text='&city; and &city;'/><vsm:note xmlns:vsm='v'>&city;</vsm:note></body></opml>");
}

TEST(Opml, IsReadAsTheTextItIsWhateverEncodingItNames) {
  std::string names;
  for (int i = 0; i < 200; ++i) names += " Zürich-ist-schön" + std::to_string(i) + "()";
  const TreePtr tree = Tree("root(" + names + ")");
  for (const char* encoding : {"ISO-8859-1", "windows-1252", "US-ASCII", "IBM037"}) {
    CWriteColctTreeOPML writer;
    writer.SetEncoding(encoding);
    writer.SetTreeRoot(tree);
    CReadColctTreeOPML reader;
    EXPECT_TRUE(reader.LoadBSTRXML(OwnedBstr(writer.GetXMLBSTR()).get())) << encoding;
    EXPECT_TRUE(Shape(TreePtr(reader.DetachTreeRoot())) == Shape(tree)) << encoding;
  }
}

}  // namespace
}  // namespace vosmere::test
