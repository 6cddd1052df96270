#include "vosmere/tree/sort_node.h"

#include "tests/support/test.h"
#include "tests/support/tree.h"

namespace vosmere::test::sort_node {

using SortBy = RNode* (CSortRNode::*)(RNode*, bool);

/// Sorts the children, stores the head as callers do, and prints them.
std::string Sorted(RNode* parent, SortBy sort, bool argument) {
  CSortRNode sorter;
  parent->firstChild = (sorter.*sort)(parent->firstChild, argument);
  return ChainShape(parent->firstChild);
}

TEST(SortNode, ByNameInBothDirections) {
  struct {
    const char *names, *descending, *ascending;
  } const cases[] = {
      {"", "", ""},
      {"apple Cherry banana", "Cherry banana apple", "apple banana Cherry"},
      {"b B a A", "b B a A", "a A b B"},
      {"ab abc", "ab abc", "ab abc"},  // the beginning of the next name counts as equal
      {"abc ab", "abc ab", "ab abc"},  // but not the other way round
      {"Z [ z", "Z z [", "[ Z z"},
  };
  for (const auto& c : cases) {
    const std::string tree = "root(" + std::string(c.names) + ")";
    EXPECT_EQ(Sorted(Tree(tree), &CSortRNode::Sort, false), c.descending);
    EXPECT_EQ(Sorted(Tree(tree), &CSortRNode::Sort, true), c.ascending);
  }
}

TEST(SortNode, OrderSortIgnoresOrderAndDirection) {
  for (const bool ascending : {true, false}) {
    TreePtr tree = Tree("root(apple Cherry banana)");
    int order = 3;
    for (RNode* link = tree->firstChild; link; link = link->next) link->item->SetOrder(order--);
    EXPECT_EQ(Sorted(tree, &CSortRNode::SortByOrder, ascending), "Cherry banana apple");
    EXPECT_EQ(Sorted(Tree("root(ab abc z)"), &CSortRNode::SortByOrder, ascending), "z ab abc");
  }
}

struct Sorter : CSortRNode {
  using CSortRNode::BubbleSort;
  using CSortRNode::CompareByOrderAsc;
  using CSortRNode::CompareByOrderDes;
  using CSortRNode::CompareItemByCol;
  using CSortRNode::SwapWithNext;
};

TEST(SortNode, DerivedSortersHaveItsSteps) {
  TreePtr tree = Tree("root(a b)");
  Sorter sorter;
  EXPECT_FALSE(sorter.BubbleSort(&tree->firstChild, Sorter::CompareItemByCol, nullptr, true));
  EXPECT_TRUE(sorter.BubbleSort(&tree->firstChild, Sorter::CompareItemByCol, nullptr, false));
  EXPECT_EQ(Shape(tree), "root(b a)");
  sorter.SwapWithNext(tree->firstChild, &tree->firstChild);
  EXPECT_EQ(Shape(tree), "root(a b)");

  void* const a = tree["a"]->item;
  void* const b = tree["b"]->item;
  tree["b"]->item->GetNodeStat()->SetStatTime(2147483647, 2147483647, 2147483647, ~0u);
  for (int column : {-1, 1, 2, 3, 4})
    EXPECT_EQ(Sorter::CompareItemByCol(a, b, &column), column >= 1 && column <= 3 ? -1 : 0);
  EXPECT_LT(Sorter::CompareItemByCol(a, b, nullptr), 0);
  EXPECT_GT(Sorter::CompareByOrderAsc(a, b, nullptr), 0);
  EXPECT_LT(Sorter::CompareByOrderDes(a, b, nullptr), 0);
}

}  // namespace vosmere::test::sort_node
