// Collections, their lists, and references to their items.
#include "tests/support/colct_list.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/collections/colct_tool.h"
#include "vosmere/cpp/own.h"

namespace vosmere::test::colct {

ColctItemName Id(const Wide& colct, const Wide& item) {
  ColctItemName id(CColctItemID::New());
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
      {W("id-b"), W("r"), "b", "r"},         {W("id-b"), W("q"), "b", nullptr},  // not a web page
      {W("id-b"), W("R"), "b", nullptr},  // letter case counts
      {W("id-b"), nullptr, "b", nullptr},    {W("id-a"), W("r"), "a", nullptr},  // no local tree
      {W("ID-B"), W("r"), nullptr, nullptr}, {nullptr, W("r"), nullptr, nullptr}};
  for (const auto& c : cases) {
    const ColctItemName id = Id(c.colct, c.item);
    EXPECT_EQ(CColctItemID::FindColctUrlNode(list.head, id.get()), c.foundItem != nullptr);
    EXPECT_EQ(id->GetRefColctNode(), c.foundColct ? list[c.foundColct]->item : nullptr);
    EXPECT_EQ(id->GetRefUrlNode(), c.foundItem ? Item(c.foundItem) : nullptr);
    EXPECT_EQ(CColctItemID::FindColctNode(list.head, id.get()), c.foundColct != nullptr);
  }
}

TEST_F(ColctItemIdTest, WhatIsHeldAlreadyWinsOverTheIdentity) {
  const ColctItemName id = Id(W("id-a"), W("p"));
  id->SetRefColctNode(list["b"]->item);
  id->SetRefUrlNode(Item("r"));
  EXPECT_TRUE(CColctItemID::FindColctUrlNode(list.head, id.get()));
  EXPECT_EQ(id->GetRefColctNode(), list["b"]->item);
  EXPECT_EQ(id->GetRefUrlNode(), Item("r"));
}

TEST_F(ColctItemIdTest, HeldReferencesThatAreGoneAreClearedButNotByAnEmptyList) {
  const ColctItemName id = Id(W("id-b"), W("p"));
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

TEST(ColctNode, TakesFromItsFileWhatTheFileSays) {
  const auto colct = New<CColctNode>();
  const auto file = New<CColctNode>();
  colct->SetUUID(W("identity"));
  file->SetName(W("name"));
  file->SetDescription(W("text"));
  file->SetUUID(W("x"));
  file->SetCheckedIn(5);
  file->SetBaseBuild(6);
  file->SetUrl(W("u"));
  colct->SetPropertiesFromColctFileNode(file.get());
  EXPECT_EQ(Utf8(colct->GetDescription()), "text");
  EXPECT_EQ(Utf8(colct->GetUUID()), "identity") << "one code unit is not an identity";
  int state = 0;
  colct->HasCheckedIn(&state);
  EXPECT_EQ(state, 5);
  EXPECT_EQ(colct->GetBaseBuild(), 6);
  EXPECT_EQ(Utf8(colct->GetUrl()), "about:blank");

  file->SetName(nullptr);
  file->SetUUID(W("xy"));
  colct->SetPropertiesFromColctFileNode(file.get());
  EXPECT_EQ(Utf8(colct->GetName()), "name");
  EXPECT_EQ(Utf8(colct->GetUUID()), "xy");
}

TEST(ColctTool, MergeAnswersWhetherTheCellUnlinkedLastWasTheHead) {
  struct {
    const char *old, *fresh, *left, *removed;
    bool result;
  } const cases[] = {
      {"a b", "b", "b", "a", true},      {"a b", "a", "a", "b", false},
      {"a b c", "b", "b", "a c", false},  // the head went first, a later cell last
      {"a b", "", "", "a b", true},      {"a b", "b a", "a b", "", false},
      {"a", "A", "", "a", true},
  };
  for (const auto& c : cases) {
    ColctList old(c.old), fresh(c.fresh), removed;
    EXPECT_EQ(CRColctTool().UpdateRColctItemList(fresh.head, &old.head, &removed.head), c.result)
        << c.old << " with " << c.fresh;
    EXPECT_EQ(old.Urls(), c.left);
    EXPECT_EQ(removed.Urls(), c.removed);
    EXPECT_EQ(fresh.Urls(), c.fresh);
  }
  ColctList old, fresh("a"), other("x");
  RColctItem* removed = other.head;
  EXPECT_FALSE(CRColctTool().UpdateRColctItemList(fresh.head, &old.head, &removed));
  EXPECT_EQ(removed, nullptr) << "an empty list loses nothing";
}

TEST(ColctTool, MergePassesTheLocalTreeAndMarksTheFirstCellOfTheAddress) {
  const TreePtr local = Tree("local(a)");
  ColctList old("a b"), fresh("b b c"), removed;
  CColctNode* const oldB = old["b"]->item;
  oldB->SetLocRNodeRoot(local);
  CRColctTool().UpdateRColctItemList(fresh.head, &old.head, &removed.head);
  EXPECT_EQ(fresh["b"]->item->GetLocRNodeRoot(), local);
  EXPECT_EQ(oldB->GetLocRNodeRoot(), nullptr);
  EXPECT_TRUE(fresh.head->mark);
  EXPECT_FALSE(fresh.head->next->mark);
  EXPECT_FALSE(fresh["c"]->mark);
}

TEST(ColctTool, MergeKeepsTheOldNetworkSideOnlyOnRequest) {
  for (const bool keep : {false, true}) {
    ColctList old("a"), fresh("a"), removed;
    CColctNode* const before = old["a"]->item;
    before->GetColctNetData()->SetRole(3);
    before->SetUUID(W("old identity"));
    before->SetBaseBuild(4);
    before->SetCheckedIn(5);
    CRColctTool tool;
    if (keep) tool.SetKeepOldColctNetData(true);
    tool.UpdateRColctItemList(fresh.head, &old.head, &removed.head);
    CColctNode* const after = fresh["a"]->item;
    int state = 0;
    after->HasCheckedIn(&state);
    EXPECT_EQ(after->GetColctNetData()->GetRole(), keep ? 3 : 0);
    EXPECT_EQ(Utf8(after->GetUUID()), keep ? "old identity" : "id-a");
    EXPECT_EQ(after->GetBaseBuild(), keep ? 4 : 0);
    EXPECT_EQ(state, keep ? 5 : 2);
  }
}

TEST(ColctTool, KeepsTheFirstOfEachAddressOrNoneOfOne) {
  const struct {
    const char *list, *firsts, *withoutX;
  } cases[] = {
      {"x y x z x", "x y z", "y z"}, {"x x", "x", ""}, {"x X", "x X", "X"},
      {"y z z", "y z", "y z z"},     {"", "", ""},
  };
  for (const auto& c : cases) {
    const std::string before = c.list;
    ColctList list(before), other(before);
    RColctItem* const first = list.head;
    EXPECT_EQ(CRColctTool().DeleteDuplcateColct(list.head), before != c.firsts);
    EXPECT_EQ(list.Urls(), c.firsts);
    EXPECT_EQ(list.head, first);
    EXPECT_EQ(CRColctTool().DeleteColctByUrl(&other.head, W("x")), before != c.withoutX);
    EXPECT_EQ(other.Urls(), c.withoutX);
  }
  ColctList list("x y z x");
  list["y"]->item->SetUrl(W(""));
  EXPECT_FALSE(CRColctTool().DeleteColctByUrl(&list.head, nullptr));
  EXPECT_TRUE(CRColctTool().DeleteColctByUrl(&list.head, list.head->item->GetUrl()));
  EXPECT_EQ(list.Urls(), " z") << "the address may belong to the list";
}

TEST(ColctItem, AShellIsFreedWithoutItsCollection) {
  const auto colct = New<CColctNode>();
  RColctItem::DeleteListShell(RColctItem::New(colct.get(), true));
  EXPECT_EQ(Utf8(colct->GetUrl()), "about:blank");
}

}  // namespace vosmere::test::colct
