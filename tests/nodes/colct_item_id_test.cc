#include "vosmere/nodes/colct_item_id.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/colct_list.h"
#include "tests/support/tree.h"
#include "tests/support/wide.h"
#include "vosmere/nodes/colct_ex_data.h"

namespace vosmere::test {
namespace {

struct IdDelete {
  void operator()(CColctItemID* id) const { CColctItemID::Delete(id); }
};
using IdPtr = std::unique_ptr<CColctItemID, IdDelete>;

IdPtr Id(const Wide& colct, const Wide& item) {
  IdPtr id(CColctItemID::New());
  id->SetColctID(colct);
  id->SetItemID(item);
  return id;
}

/// Two collections; the second has the local items p, q (a folder) and r, whose identities are
/// their names.
class ColctItemIdTest : public testing::Test {
 protected:
  ColctItemIdTest() {
    for (const char* name : {"p", "q", "r"}) local[name]->item->SetUUID(W(std::string(name)));
    list["b"]->item->SetLocRNodeRoot(local);
  }
  CUrlNode* Item(const char* name) const { return static_cast<CUrlNode*>(local[name]->item); }

  ColctList list{"a b"};
  TreePtr local = Tree("local(p q() r)");
};

TEST_F(ColctItemIdTest, ResolvesByIdentity) {
  const IdPtr id = Id(W("id-b"), W("r"));
  EXPECT_TRUE(CColctItemID::FindColctUrlNode(list.head, id.get()));
  EXPECT_EQ(id->GetRefColctNode(), list["b"]->item);
  EXPECT_EQ(id->GetRefUrlNode(), Item("r"));
}

TEST_F(ColctItemIdTest, WhatDoesNotResolveIsCleared) {
  struct {
    const char* colct;
    const char* item;
    bool colctFound;
  } const cases[] = {{"id-b", "q", true},  // no web page
                     {"id-b", "R", true},  // letter case counts
                     {"id-a", "r", true},  // no local tree
                     {"ID-B", "r", false}};
  for (const auto& c : cases) {
    const IdPtr id = Id(W(std::string(c.colct)), W(std::string(c.item)));
    EXPECT_FALSE(CColctItemID::FindColctUrlNode(list.head, id.get()));
    EXPECT_EQ(id->GetRefColctNode() != nullptr, c.colctFound) << c.colct << " " << c.item;
    EXPECT_EQ(id->GetRefUrlNode(), nullptr);
    EXPECT_EQ(CColctItemID::FindColctNode(list.head, id.get()), c.colctFound);
  }
}

TEST_F(ColctItemIdTest, WhatIsHeldAlreadyWinsOverTheIdentity) {
  const IdPtr id = Id(W("id-a"), W("p"));
  id->SetRefColctNode(list["b"]->item);
  id->SetRefUrlNode(Item("r"));
  EXPECT_TRUE(CColctItemID::FindColctUrlNode(list.head, id.get()));
  EXPECT_EQ(id->GetRefColctNode(), list["b"]->item);
  EXPECT_EQ(id->GetRefUrlNode(), Item("r"));
}

TEST_F(ColctItemIdTest, HeldReferencesThatAreGoneAreCleared) {
  const IdPtr id = Id(W("id-b"), W("p"));
  const auto goneItem = New<CUrlNode>();
  id->SetRefUrlNode(goneItem.get());
  EXPECT_FALSE(CColctItemID::FindColctUrlNode(list.head, id.get()));
  EXPECT_EQ(id->GetRefUrlNode(), nullptr);

  const auto goneColct = New<CColctNode>();
  id->SetRefColctNode(goneColct.get());
  id->SetRefUrlNode(Item("p"));
  EXPECT_FALSE(CColctItemID::FindColctNode(list.head, id.get()));
  EXPECT_EQ(id->GetRefColctNode(), nullptr);
  EXPECT_EQ(id->GetRefUrlNode(), nullptr);
}

TEST_F(ColctItemIdTest, AnEmptyListChangesNothing) {
  const IdPtr id = Id(W("id-b"), W("r"));
  id->SetRefUrlNode(Item("p"));
  EXPECT_FALSE(CColctItemID::FindColctUrlNode(nullptr, id.get()));
  EXPECT_EQ(id->GetRefUrlNode(), Item("p"));
}

TEST_F(ColctItemIdTest, NullNamesNothing) {
  list["a"]->item->SetUUID(nullptr);
  local["p"]->item->SetUUID(nullptr);
  EXPECT_FALSE(CColctItemID::FindColctNode(list.head, Id(nullptr, nullptr).get()));
  EXPECT_FALSE(CColctItemID::FindColctUrlNode(list.head, Id(W("id-b"), nullptr).get()));
}

TEST(ColctRecords, StartEmptyAndCopyTheirTexts) {
  const IdPtr id(CColctItemID::New());
  EXPECT_EQ(id->GetColctID(), nullptr);
  EXPECT_EQ(id->GetItemID(), nullptr);
  EXPECT_EQ(id->GetName(), nullptr);
  id->SetName(W("name"));
  EXPECT_EQ(Utf8(id->GetName()), "name");
  const std::unique_ptr<RColctItemID> cell(RColctItemID::New(id.get()));
  EXPECT_EQ(cell->item, id.get());
  EXPECT_EQ(cell->prev, cell.get());

  CColctExData* const data = CColctExData::New();
  EXPECT_EQ(data->GetColctUrl(), nullptr);
  EXPECT_EQ(data->GetItemID(), nullptr);
  EXPECT_EQ(data->GetStoredColctNode(), nullptr);
  data->SetColctUrl(W("u"));
  data->SetItemID(W("i"));
  EXPECT_EQ(Utf8(data->GetColctUrl()), "u");
  EXPECT_EQ(Utf8(data->GetItemID()), "i");
  const std::unique_ptr<RColctExData> dataCell(RColctExData::New(data));
  EXPECT_EQ(dataCell->prev, dataCell.get());
  CColctExData::Delete(data);
}

}  // namespace
}  // namespace vosmere::test
