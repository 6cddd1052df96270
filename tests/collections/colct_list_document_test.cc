#include "vosmere/collections/colct_list_document.h"

#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/row.h"
#include "tests/support/stored_documents.h"

namespace vosmere::test {
namespace {

/// Owns the cells and their collections.
struct List {
  ~List() { RColctItem::DeleteList(head); }

  CColctNode& Add() {
    CColctNode* const colct = CColctNode::New();
    colct->GetNodeStat()->SetStatTime(1, 2, 3, 7);
    chain::Append(head, RColctItem::New(colct));
    return *colct;
  }
  std::string Saved() const {
    CWriteColctListXML writer;
    writer.SetRColctItemHead(head);
    return test::Saved(writer);
  }
  /// Titles, addresses, builds and states.
  std::string Show() const {
    return Row(head, [](const RColctItem* cell) {
      int checkedIn = 0;
      cell->item->HasCheckedIn(&checkedIn);
      return Utf8(cell->item->GetName()) + "," + Utf8(cell->item->GetUrl()) + "," +
             std::to_string(cell->item->GetBaseBuild()) + "," + std::to_string(checkedIn);
    });
  }

  RColctItem* head = nullptr;
};

/// What is in the list of a document.
List Read(const std::string& content) {
  CReadColctListXML reader;
  EXPECT_TRUE(Load(reader, "<collectionlist>" + content + "</collectionlist>"));
  return {reader.DetachRColctItemHead()};
}

TEST(ColctList, IsWrittenByteForByte) {
  List list;
  CColctNode& full = list.Add();
  full.SetName(W("News & \"more\""));
  full.SetUrl(W("http://a.example/feed?a=1&b=2"));
  full.SetDescription(W("Déjà vu 日本語 😀"));
  full.GetNodeStat()->SetStatTime(-2147483647 - 1, 2147483647, 0, 7);
  full.SetUUID(W("00000000-0000-4000-8000-000000000001"));
  full.SetVersion(7);
  full.SetBaseBuild(12);
  full.SetCheckedIn(0);
  full.GetColctNetData()->SetOwner(W("Ann <ann@a.example>"));
  CColctNode& other = list.Add();
  other.SetColctType(static_cast<tagCOLCTTYPE>(2));  // left out
  CColctNode& bare = list.Add();
  bare.SetUrl(W(""));
  bare.SetVersion(0);
  CColctNode& checkedIn = list.Add();
  checkedIn.SetName(W("Checked in"));
  checkedIn.SetBaseBuild(-5);
  EXPECT_EQ(list.Saved(), TestData("colct_list.xml"));
}

TEST(ColctList, EmptyIsHeadAndTail) {
  EXPECT_EQ(List().Saved(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            " <collectionlist version=\"1.0\">\r\n</collectionlist>");
}

TEST(ColctList, VersionsAreNotReadBack) {
  std::string expected = TestData("colct_list.xml");
  const std::string version = "<version>7</version>";
  expected.replace(expected.find(version), version.size(), "<version>1</version>");
  // A collection is never read without an address, nor one of version 0 back.
  const std::string bare =
      "<collection><stat addDate=\"1\" lastModified=\"2\" lastVisit=\"3\"/>\r\n";
  expected.replace(
      expected.find(bare + "</"), bare.size(),
      "<collection><link>about:blank</link>\r\n" + bare.substr(12) + "<version>1</version>\r\n");
  EXPECT_EQ(Rewritten("colct_list.xml", TestData("colct_list.xml")), expected);
}

TEST(ColctList, ElementsCountDirectlyInTheirCollection) {
  const struct {
    const char *content, *shown;
  } cases[] = {
      {"<collection/>", ",about:blank,0,2"},
      {"<collection><title>a<collection><title>b</title></collection></title><link>u</link>"
       "</collection>",
       "ab,about:blank,0,2 b,about:blank,0,2"},
      {"<collection><title>a</title><collectionlist><collection/></collectionlist></collection>"
       "<collection><collectionlist/><title>b</title></collection>",
       "a,about:blank,0,2 ,about:blank,0,2 ,about:blank,0,2"},
      {"<x><collection><title>a</title></collection></x>", "a,about:blank,0,2"},
      {"<collection><x><title>a</title></x></collection><title>b</title>", ",about:blank,0,2"},
      {"<collection><title>a</title><title>b<i>c</i></title><xmlUrl>u</xmlUrl></collection>",
       "bc,about:blank,0,2"},
      // Behind an inner collection nothing belongs to the outer one.
      {"<collection><title>a</title><collection><title>b</title></collection><title>c</title>"
       "<stat addDate='1'/></collection>",
       "a,about:blank,0,2 b,about:blank,0,2"},
      {"<Collection/><collection><Title>a</Title><link>u</link></collection>", ",u,0,2"},
      {"<collection><build basebuild='7' checkedin='false'/></collection>", ",about:blank,7,0"},
      {"<collection><build checkedin='TRUE'/></collection>", ",about:blank,0,0"},
      {"<collection><build checkedin='false'/><build checkedin='true'/></collection>",
       ",about:blank,0,2"},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.content).Show(), c.shown) << c.content;
}

TEST(ColctList, OneTimeLeavesTheOthers) {
  const List list = Read("<collection><stat lastVisit='5' added='6'/></collection>");
  LONG added = 0, modified = 0, visited = 0;
  list.head->item->GetNodeStat()->GetStatTime(&added, &modified, &visited);
  EXPECT_GT(added, 6);  // the clock's
  EXPECT_EQ(modified, added);
  EXPECT_EQ(visited, 5);
}

TEST(ColctList, AnotherDocumentIsAppendedUntilTheListIsDetached) {
  CReadColctListXML reader;
  const std::string document = "<collectionlist><collection/></collectionlist>";
  ASSERT_TRUE(Load(reader, document));
  ASSERT_TRUE(Load(reader, document));
  EXPECT_FALSE(Load(reader, "<collectionlist><collection/>"));
  ASSERT_TRUE(reader.GetRColctItemHead() && reader.GetRColctItemHead()->next);
  EXPECT_EQ(List{reader.DetachRColctItemHead()}.Show(), ",about:blank,0,2 ,about:blank,0,2");
  ASSERT_TRUE(Load(reader, document));
  reader.DeleteRColctItemList();
  EXPECT_EQ(reader.GetRColctItemHead(), nullptr);
}

}  // namespace
}  // namespace vosmere::test
