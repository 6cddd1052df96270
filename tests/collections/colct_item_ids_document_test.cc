#include "vosmere/collections/colct_item_ids_document.h"

#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/row.h"
#include "tests/support/stored_documents.h"

namespace vosmere::test {
namespace {

struct Entry {
  Wide colctID, itemID, name;
};

/// The lines of the document of these entries.
std::string Saved(std::initializer_list<Entry> entries, bool colctOnly = false) {
  RColctItemID* head = nullptr;
  for (const Entry& entry : entries) {
    CColctItemID* const id = CColctItemID::New();
    id->SetColctID(entry.colctID);
    id->SetItemID(entry.itemID);
    id->SetName(entry.name);
    chain::Append(head, RColctItemID::New(id));
  }
  CWriteColctItemID writer;
  writer.SetRColctItemIDHead(head);
  if (colctOnly) writer.SetColctOnly();
  const std::string saved = test::Saved(writer);
  RColctItemID::DeleteList(head);
  return saved;
}

std::string Read(const std::string& content) {
  CReadColctItemID reader;
  EXPECT_TRUE(Load(reader, "<colctitem>" + content + "</colctitem>"));
  RColctItemID* const head = reader.DetachRColctItemIDHead();
  const std::string shown = Row(head, [](const RColctItemID* cell) {
    return Utf8(cell->item->GetColctID()) + "," + Utf8(cell->item->GetItemID()) + "," +
           Utf8(cell->item->GetName());
  });
  RColctItemID::DeleteList(head);
  return shown;
}

TEST(ColctItemIds, AreWrittenByteForByteAndReadBack) {
  const std::string golden = TestData("colct_item_ids.xml");
  EXPECT_EQ(Saved({{W("c<1>"), W("i&\"1'"), W("Déjà <vu>")},
                   {nullptr, W("i"), W("no collection")},
                   {W(""), W("i"), nullptr},
                   {W("c"), nullptr, W("no item")},
                   {W("c2"), W("i2"), nullptr}}),
            golden);
  EXPECT_EQ(Rewritten("colct_item_ids.xml", golden), golden);
}

TEST(ColctItemIds, OfCollectionsAloneNeedNoItem) {
  EXPECT_EQ(
      Saved({{W("c1"), nullptr, W("a & b")}, {W("c2"), W("i"), W("")}, {nullptr, W("i"), nullptr}},
            true),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<colctitem version=\"1.0\">\r\n"
      "<item colctid=\"c1\">a &amp; b</item>\r\n"
      "<item colctid=\"c2\" />\r\n"
      "</colctitem>");
  EXPECT_EQ(Read("<item colctid='c1'>a</item>"), "c1,(null),a");
}

TEST(ColctItemIds, ItemsCountAnywhereButInItems) {
  const struct {
    const char *content, *shown;
  } cases[] = {
      {"<item/><Item/><item id='i' ID='j' name='n'/>", "(null),(null),(null) (null),i,(null)"},
      {"<x><item colctid='c' id=''>n</item></x>", "c,,n"},
      {"<item id='i'>a<item id='j'>b</item></item>", "(null),i,ab"},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.content), c.shown) << c.content;
}

}  // namespace
}  // namespace vosmere::test
