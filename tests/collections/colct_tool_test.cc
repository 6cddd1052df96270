#include "vosmere/collections/colct_tool.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/colct_list.h"
#include "tests/support/tree.h"
#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

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
}

TEST(ColctTool, MergeWithAnEmptyOldListEmptiesTheRemovedList) {
  ColctList old, fresh("a"), other("x");
  RColctItem* removed = other.head;
  EXPECT_FALSE(CRColctTool().UpdateRColctItemList(fresh.head, &old.head, &removed));
  EXPECT_EQ(removed, nullptr);
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

TEST(ColctTool, TheFirstOfEachAddressStays) {
  struct {
    const char *list, *left;
  } const cases[] = {{"x y x x", "x y"}, {"x X", "x X"}, {"x y y z", "x y z"}, {"", ""}};
  for (const auto& c : cases) {
    ColctList list(c.list);
    RColctItem* const first = list.head;
    EXPECT_EQ(CRColctTool().DeleteDuplcateColct(list.head), std::string(c.list) != c.left);
    EXPECT_EQ(list.Urls(), c.left);
    EXPECT_EQ(list.head, first);
  }
}

TEST(ColctTool, RemovesEveryCellOfAnAddress) {
  struct {
    const char *list, *left;
  } const cases[] = {{"x y x z x", "y z"}, {"x x", ""}, {"X y", "X y"}, {"", ""}};
  for (const auto& c : cases) {
    ColctList list(c.list);
    EXPECT_EQ(CRColctTool().DeleteColctByUrl(&list.head, W("x")), std::string(c.list) != c.left);
    EXPECT_EQ(list.Urls(), c.left);
  }
  ColctList list("x y x");
  EXPECT_FALSE(CRColctTool().DeleteColctByUrl(&list.head, nullptr));
  EXPECT_TRUE(CRColctTool().DeleteColctByUrl(&list.head, list.head->item->GetUrl()));
  EXPECT_EQ(list.Urls(), "y") << "the address may belong to the list";
}

TEST(ColctItem, AShellIsFreedWithoutItsCollection) {
  const auto colct = New<CColctNode>();
  RColctItem::DeleteListShell(RColctItem::New(colct.get(), true));
  EXPECT_EQ(Utf8(colct->GetUrl()), "about:blank");
}

}  // namespace
}  // namespace vosmere::test
