#include "vosmere/nodes/sort_list.h"

#include <gtest/gtest.h>

#include "tests/support/tree.h"

namespace vosmere::test {
namespace {

struct Sorter : CSortRList {
  using CSortRList::BubbleSort;
  using CSortRList::CompareNameAsc;
  using CSortRList::CompareNameDes;
  using CSortRList::SwapWithNext;
};

/// Items of the given names; the first was visited last.
class SortListTest : public testing::Test {
 protected:
  SortListTest() {
    first->SetName(W("a"));
    second->SetName(W("b"));
    second->GetNodeStat()->SetStatTime(0, 0, 0, CNodeStat::kLastVisited);
  }

  ItemPtr<CUrlNode> first = New<CUrlNode>(), second = New<CUrlNode>();
  TList<CBaseNode*> a{first.get()}, b{second.get()};
};

TEST_F(SortListTest, DerivedSortersHaveItsSteps) {
  TList<CBaseNode*>* head = nullptr;
  Sorter sorter;
  EXPECT_FALSE(sorter.BubbleSort(&head, Sorter::CompareNameDes, nullptr));
  chain::Append(head, &a);
  EXPECT_FALSE(sorter.BubbleSort(&head, Sorter::CompareNameDes, nullptr));
  chain::Append(head, &b);
  EXPECT_TRUE(sorter.BubbleSort(&head, Sorter::CompareNameDes, nullptr));
  EXPECT_EQ(head, &b);
  sorter.SwapWithNext(head, &head);
  EXPECT_EQ(head, &a);
  EXPECT_FALSE(sorter.BubbleSort(&head, Sorter::CompareNameAsc, nullptr));
}

TEST_F(SortListTest, ComparesByNameOrVisitAndByNoOtherKey) {
  const auto sign = [](int result) { return (result > 0) - (result < 0); };
  for (const auto& [key, ascending] : {std::pair(0, 1), {1, -1}, {-1, 0}, {2, 0}}) {
    int column = key;
    EXPECT_EQ(sign(Sorter::CompareNameAsc(first.get(), second.get(), &column)), ascending);
    EXPECT_EQ(sign(Sorter::CompareNameDes(first.get(), second.get(), &column)), -ascending);
  }
  EXPECT_GT(Sorter::CompareNameAsc(first.get(), second.get(), nullptr), 0);
}

}  // namespace
}  // namespace vosmere::test
