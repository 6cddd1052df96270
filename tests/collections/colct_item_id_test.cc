#include "vosmere/collections/colct_item_id.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/colct_list.h"
#include "tests/support/tree.h"
#include "tests/support/wide.h"

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

TEST_F(ColctItemIdTest, ResolvesByIdentityAndClearsWhatDoesNotResolve) {
  struct {
    Wide colct, item;
    const char *foundColct, *foundItem;
  } const cases[] = {
      {W("id-b"), W("r"), "b", "r"},         {W("id-b"), W("q"), "b", nullptr},  // no web page
      {W("id-b"), W("R"), "b", nullptr},  // letter case counts
      {W("id-b"), nullptr, "b", nullptr},    {W("id-a"), W("r"), "a", nullptr},  // no local tree
      {W("ID-B"), W("r"), nullptr, nullptr}, {nullptr, W("r"), nullptr, nullptr}};
  for (const auto& c : cases) {
    const IdPtr id = Id(c.colct, c.item);
    EXPECT_EQ(CColctItemID::FindColctUrlNode(list.head, id.get()), c.foundItem != nullptr);
    EXPECT_EQ(id->GetRefColctNode(), c.foundColct ? list[c.foundColct]->item : nullptr);
    EXPECT_EQ(id->GetRefUrlNode(), c.foundItem ? Item(c.foundItem) : nullptr);
    EXPECT_EQ(CColctItemID::FindColctNode(list.head, id.get()), c.foundColct != nullptr);
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

TEST_F(ColctItemIdTest, HeldReferencesThatAreGoneAreClearedButNotByAnEmptyList) {
  const IdPtr id = Id(W("id-b"), W("p"));
  const auto goneItem = New<CUrlNode>();
  id->SetRefUrlNode(goneItem.get());
  EXPECT_FALSE(CColctItemID::FindColctUrlNode(list.head, id.get()));
  EXPECT_EQ(id->GetRefUrlNode(), nullptr);

  const auto goneColct = New<CColctNode>();
  id->SetRefColctNode(goneColct.get());
  id->SetRefUrlNode(Item("p"));
  EXPECT_FALSE(CColctItemID::FindColctUrlNode(nullptr, id.get()));
  EXPECT_EQ(id->GetRefUrlNode(), Item("p"));
  EXPECT_FALSE(CColctItemID::FindColctNode(list.head, id.get()));
  EXPECT_EQ(id->GetRefColctNode(), nullptr);
  EXPECT_EQ(id->GetRefUrlNode(), nullptr);
}

}  // namespace
}  // namespace vosmere::test
