// What the writers and readers of collections do beyond what holds for every document.
#include "tests/support/document.h"
#include "tests/support/platform.h"
#include "tests/support/stored_documents.h"
#include "tests/support/test.h"

namespace vosmere::test::colct_documents {

TEST(ColctItemIds, OfCollectionsAloneNeedNoItem) {
  CReadColctItemID reader;
  ASSERT_TRUE(Load(reader,
                   "<colctitem><item colctid='c1'>a &amp; b</item><item colctid='c2' id='i'/>"
                   "<item id='i'/></colctitem>"));
  const ColctItemNameList ids(reader.DetachRColctItemIDHead());
  CWriteColctItemID writer;
  writer.SetRColctItemIDHead(ids.get());
  writer.SetColctOnly();
  EXPECT_EQ(Saved(writer),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<colctitem version=\"1.0\">\r\n"
            "<item colctid=\"c1\">a &amp; b</item>\r\n"
            "<item colctid=\"c2\" />\r\n"
            "</colctitem>");
}

TEST(ColctItemIds, ItemsInItemsHoldTheirTextsUpToABound) {
  const auto nested = [](int levels, const std::string& text) {
    std::string content = text;
    for (int level = 0; level < levels; ++level) content = "<item>a" + content + "</item>";
    return "<colctitem>" + content + "</colctitem>";
  };
  CReadColctItemID reader;
  ASSERT_TRUE(Load(reader, nested(kLevelsThatLoad - 1, "")));
  const ColctItemNameList ids(reader.DetachRColctItemIDHead());
  std::size_t left = kLevelsThatLoad;
  for (const RColctItemID* cell = ids.get(); cell; cell = cell->next)
    EXPECT_EQ(Utf8(cell->item->GetName()), std::string(--left, 'a'));
  EXPECT_EQ(left, 1u);

  EXPECT_TRUE(Load(reader, nested(4, std::string(1000000, 'x'))));
  for (const std::string part : {"x", "<x/>"}) {
    std::string many;
    while (many.size() < 25000000u / kLevelsThatLoad) many += part;
    EXPECT_FALSE(Load(reader, nested(kLevelsThatLoad - 2, many))) << part;
    EXPECT_EQ(reader.LastError().fault, DocumentFault::kExpandsTooMuch) << part;
  }
}

TEST(ColctList, LeavesOutWhatIsNotSetAndOtherTypes) {
  RColctItem* head = nullptr;
  for (const int type : {2, 1}) {
    CColctNode* const colct = CColctNode::New();
    colct->SetColctType(static_cast<tagCOLCTTYPE>(type));
    colct->SetUrl(W(""));
    colct->SetVersion(0);
    colct->GetNodeStat()->SetStatTime(1, 2, 3, 7);
    chain::Append(head, RColctItem::New(colct));
  }
  const vosmere::ColctList list(head);
  CWriteColctListXML writer;
  writer.SetRColctItemHead(head);
  EXPECT_THAT(Saved(writer), HasSubstr("<collectionlist version=\"1.0\">\r\n"
                                       "<collection><stat addDate=\"1\" lastModified=\"2\" "
                                       "lastVisit=\"3\"/>\r\n</collection>\r\n</coll"));
}

TEST(ColctProfile, AddressesStartAtTheLibraryWhateverStandsBefore) {
  const struct {
    const char* url;
    Wide base, library;
    const char* written;
  } cases[] = {
      {"C:\\Data\\Lib\\a.xml", W("C:\\Data\\"), W("Lib"), "Lib\\a.xml"},
      {"X:\\OtherLib\\a.xml", W("12345678"), W("Lib"), "Lib\\a.xml"},
      {"12345678LIBx", W("C:\\Data\\"), W("Lib"), "LIBx"},
      {"C:\\Data\\Lib", W("C:\\Data\\"), W("Lib"), "C:\\Data\\Lib"},  // nothing after it
      {"C:\\Data\\Lab\\a", W("C:\\Data\\"), W("Lib"), "C:\\Data\\Lab\\a"},
      {"Lib\\a", W(""), W("Lib"), "Lib\\a"},
      {"C:\\Data\\Lib\\a", W("C:\\Data\\"), nullptr, "C:\\Data\\Lib\\a"},
      {"C:\\Data\\Lib\\a", nullptr, W("Lib"), "C:\\Data\\Lib\\a"},
  };
  for (const auto& c : cases) {
    const Wide url = W(std::string(c.url));
    CColctExData* const data = CColctExData::New();
    data->SetColctUrl(url);
    const ColctExtraList list(RColctExData::New(data));
    CWriteColctExData writer;
    writer.SetBasePathAndLibrary(c.base, c.library);
    writer.SetDefaultColctUrl(url);
    writer.SetRColctExDataHead(list.get());
    const std::string written = c.written;
    EXPECT_THAT(Saved(writer), HasSubstr("<head><defaultcolct>" + written +
                                         "</defaultcolct>\r\n</head>\r\n<colct><url>" + written +
                                         "</url>\r\n</colct>"));
  }
}

TEST(ColctProfile, TheDefaultIsMadeRelativeWhenItIsSet) {
  const Wide url = W("C:\\Lib\\a");
  for (const Wide& then : {Wide(nullptr), W(""), W("C:\\Lib\\b")}) {
    CWriteColctExData writer;
    writer.SetDefaultColctUrl(url);
    writer.SetDefaultColctUrl(then);
    writer.SetBasePathAndLibrary(W("C:\\"), W("Lib"));
    EXPECT_THAT(Saved(writer),
                HasSubstr(then && *then
                              ? "<colctprofile version=\"1.0\">\r\n<head><defaultcolct>C:\\Lib\\b<"
                              : "<colctprofile version=\"1.0\">\r\n</colctprofile>"));
  }
}

}  // namespace vosmere::test::colct_documents
