#include "vosmere/collections/colct_item_ids_document.h"

#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/platform.h"
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

TEST(ColctItemIds, ItemsCountAnywhere) {
  const struct {
    const char *content, *shown;
  } cases[] = {
      {"<item/><Item/><item id='i' ID='j' name='n'/>", "(null),(null),(null) (null),i,(null)"},
      {"<x><item colctid='c' id=''>n</item></x>", "c,,n"},
      {"<item id='i'>a<item id='j'>b</item></item><colctitem><item/></colctitem>",
       "(null),i,ab (null),j,b (null),(null),(null)"},
  };
  for (const auto& c : cases) EXPECT_EQ(Read(c.content), c.shown) << c.content;
}

TEST(ColctItemIds, ItemsInItemsHoldTheirTextsUpToABound) {
  const auto nested = [](int levels, const std::string& text) {
    std::string content = text;
    for (int level = 0; level < levels; ++level) content = "<item>a" + content + "</item>";
    return "<colctitem>" + content + "</colctitem>";
  };
  CReadColctItemID reader;
  ASSERT_TRUE(Load(reader, nested(kLevelsThatLoad - 1, "")));
  RColctItemID* const head = reader.DetachRColctItemIDHead();
  std::size_t left = kLevelsThatLoad;
  for (const RColctItemID* cell = head; cell; cell = cell->next)
    EXPECT_EQ(Utf8(cell->item->GetName()), std::string(--left, 'a'));
  EXPECT_EQ(left, 1u);
  RColctItemID::DeleteList(head);

  EXPECT_TRUE(Load(reader, nested(4, std::string(6000000, 'x'))));
  for (const char* part : {"x", "<x/>"}) {
    std::string many;
    while (many.size() < 200000) many += part;
    EXPECT_FALSE(Load(reader, nested(kLevelsThatLoad - 2, many))) << part;
    EXPECT_EQ(reader.LastError().fault, DocumentFault::kExpandsTooMuch) << part;
  }
}

}  // namespace
}  // namespace vosmere::test
