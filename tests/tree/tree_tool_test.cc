#include "vosmere/tree/tree_tool.h"

#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"

namespace vosmere::test::tree_tool {

TEST(TreeTool, InsertsAtEveryPlace) {
  const struct {
    void (*insert)(RNode* reference, RNode* node);
    const char *reference, *shape;
  } cases[] = {{RNTool::InsertAsChild, "b", "root(a b(c d x) e())"},
               {RNTool::InsertAsChild, "e", "root(a b(c d) e(x))"},
               {RNTool::InsertAsHeadChild, "b", "root(a b(x c d) e())"},
               {RNTool::InsertAsHeadChild, "e", "root(a b(c d) e(x))"},
               {RNTool::InsertAsLast, "a", "root(a b(c d) e() x)"},
               {RNTool::InsertAfter, "a", "root(a x b(c d) e())"},
               {RNTool::InsertAfter, "e", "root(a b(c d) e() x)"},
               {RNTool::InsertAfter, "c", "root(a b(c x d) e())"},
               {RNTool::InsertBefore, "a", "root(x a b(c d) e())"},
               {RNTool::InsertBefore, "b", "root(a x b(c d) e())"},
               {RNTool::InsertBefore, "e", "root(a b(c d) x e())"}};
  for (const auto& c : cases) {
    TreePtr tree = Tree("root(a b(c d) e())");
    c.insert(tree[c.reference], Page("x").release());
    EXPECT_EQ(Shape(tree), c.shape);
  }
}

TEST(TreeTool, WorksOnAChainWithoutAParent) {
  RNode* const b = Page("b").release();
  RNTool::InsertAfter(b, Page("d").release());
  RNTool::InsertAfter(b, Page("c").release());
  RNTool::InsertAfter(b->prev, Page("e").release());
  RNTool::InsertAsLast(b, Page("f").release());
  RNTool::InsertBefore(b, Page("a").release());
  RNTool::InsertAsHead(b->next, Page("0").release());
  RNode* const head = RNTool::GetHeadNode(b);
  EXPECT_EQ(ChainShape(head), "0 a b c d e f");
  EXPECT_EQ(RNTool::GetHeadNode(head->prev), head);
  TreePtr parent = Tree("parent()");
  EXPECT_EQ(RNTool::SetParent(b, parent), nullptr);
  EXPECT_EQ(Shape(parent), "parent(0 a b c d e f)");
  EXPECT_EQ(RNTool::SetParent(b, nullptr), parent);
  EXPECT_EQ(Shape(parent), "parent()");
  EXPECT_EQ(head->parent, nullptr);
  EXPECT_EQ(ChainShape(head), "0 a b c d e f");
  RNTool::SetParent(head, parent);
}

TEST(TreeTool, InsertAsHeadLeavesTheParentsFirstChild) {
  TreePtr tree = Tree("root(a b)");
  const TreePtr added = Page("x");
  RNTool::InsertAsHead(tree["b"], added);
  EXPECT_EQ(NameOf(tree->firstChild), "a");
  EXPECT_EQ(ChainShape(added), "x a b");
  EXPECT_EQ(added->parent, tree);
}

TEST(TreeTool, FindsItsWayAndGetLastNodeIsAlwaysNull) {
  TreePtr tree = Tree("root(a b(c d) e)");
  EXPECT_EQ(RNTool::GetParentNode(tree["c"]), tree["b"]);
  EXPECT_EQ(RNTool::GetChildrenNode(tree["b"]), tree["c"]);
  EXPECT_EQ(RNTool::GetNextNode(tree["b"]), tree["e"]);
  EXPECT_EQ(RNTool::GerPrevNode(tree["b"]), tree["a"]);
  for (const char* first : {"root", "a", "c"})
    EXPECT_EQ(RNTool::GerPrevNode(tree[first]), nullptr) << first;
  EXPECT_EQ(RNTool::GetHeadNode(tree["e"]), tree["a"]);
  for (const char* name : {"root", "d"}) EXPECT_EQ(RNTool::GetRootNode(tree[name]), tree) << name;
  EXPECT_EQ(RNTool::GetRootRNode(tree), tree);
  EXPECT_EQ(RNTool::GetLastNode(tree["a"]), nullptr);
}

TEST(TreeTool, RemovesFromEveryPlaceButOnlyItsOwn) {
  TreePtr tree = Tree("root(a b(x y) c d)");
  EXPECT_FALSE(RNTool::RemoveOneChild(tree, tree["x"]));
  EXPECT_FALSE(RNTool::RemoveOneChild(tree["b"], tree["c"]));
  EXPECT_FALSE(RNTool::RemoveOneChild(tree["a"], tree["c"]));
  EXPECT_EQ(Shape(tree), "root(a b(x y) c d)");
  struct {
    const char *child, *left;
  } const steps[] = {{"b", "root(a c d)"}, {"d", "root(a c)"}, {"a", "root(c)"}, {"c", "root()"}};
  for (const auto& step : steps) {
    const TreePtr child(tree[step.child]);
    EXPECT_TRUE(RNTool::RemoveOneChild(tree, child));
    EXPECT_EQ(Shape(tree), step.left);
    EXPECT_TRUE(IsDetached(child));
    EXPECT_FALSE(RNTool::RemoveOneChild(tree, child));
  }
}

TEST(TreeTool, MovesAnywhere) {
  struct {
    const char *parent, *node, *before, *result;
  } const cases[] = {
      {"p", "x", nullptr, "root(p(y z x) q())"},  // within one parent, to the end
      {"p", "z", nullptr, "root(p(x y z) q())"},  //
      {"p", "z", "x", "root(p(z x y) q())"},      // to the front
      {"p", "z", "y", "root(p(x z y) q())"},      //
      {"p", "y", "y", "root(p(x y z) q())"},      // before itself: stays
      {"p", "z", "z", "root(p(x y z) q())"},      //
      {"q", "y", nullptr, "root(p(x z) q(y))"},   // to an empty parent
      {"q", "y", "x", "root(p(x z) q(y))"},       // ... where a place means nothing
      {"root", "y", "p", "root(y p(x z) q())"},  {"root", "y", "q", "root(p(x z) y q())"},
      {"q", "p", nullptr, "root(q(p(x y z)))"},  // with everything below
  };
  for (const auto& c : cases) {
    TreePtr tree = Tree("root(p(x y z) q())");
    RNTool::MoveRNodeInDataTree(tree[c.parent], tree[c.node], c.before ? tree[c.before] : nullptr);
    EXPECT_EQ(Shape(tree), c.result);
  }
}

TEST(TreeTool, ReplacesAtEveryPlaceAndBothKeepTheirChildren) {
  struct {
    const char *before, *after;
  } const cases[] = {{"root(o(c))", "root(n(d))"},
                     {"root(o(c) b)", "root(n(d) b)"},
                     {"root(a o(c))", "root(a n(d))"},
                     {"root(a o(c) b)", "root(a n(d) b)"}};
  for (const auto& c : cases) {
    TreePtr tree = Tree(c.before);
    const TreePtr old(tree["o"]);
    RNTool::ReplaceSingleRNode(old, Tree("n(d)").release());
    EXPECT_EQ(Shape(tree), c.after);
    EXPECT_TRUE(IsDetached(old));
    EXPECT_EQ(Shape(old), "o(c)");
  }
}

TEST(TreeTool, SetParentMovesTheWholeChain) {
  TreePtr from = Tree("from(a b(x) c)");
  TreePtr to = Tree("to(old)");
  const TreePtr dropped(to["old"]);
  EXPECT_EQ(RNTool::SetParent(from["b"], to), from);
  EXPECT_EQ(Shape(from), "from()");
  EXPECT_EQ(Shape(to), "to(a b(x) c)");
  EXPECT_EQ(dropped->parent, to) << "until it is linked again";
  EXPECT_EQ(RNTool::SetParent(to["b"], to), to) << "and changes nothing";
  EXPECT_EQ(Shape(to), "to(a b(x) c)");
}

TEST(TreeTool, CopiesFoldersAndPagesButNoCollections) {
  TreePtr tree = Tree("root(a b(c @f d(e() g)) @h i())");
  tree["c"]->item->SetUUID(W("identity of c"));
  TreePtr copy = Tree("copy(first)");
  RNTool::AddAllFolderChildren(copy, tree);
  EXPECT_EQ(Shape(copy), "copy(first a b(c d(e() g)) i())");
  EXPECT_EQ(Utf8(copy["c"]->item->GetUUID()), "identity of c");
  EXPECT_EQ(Shape(tree), "root(a b(c @f d(e() g)) @h i())");
  TreePtr firstLevel = Tree("copy()");
  RNTool::AddFirstLevelFolderChildren(firstLevel, tree);
  EXPECT_EQ(Shape(firstLevel), "copy(a b() i())");
}

TEST(TreeTool, CopyMayGoBelowOrIntoItsOwnSource) {
  TreePtr tree = Tree("root(a b(c(d) e))");
  RNTool::AddAllFolderChildren(tree["c"], tree);
  EXPECT_EQ(Shape(tree), "root(a b(c(d a b(c(d) e)) e))");
  TreePtr itself = Tree("root(a(b) c)");
  RNTool::AddAllFolderChildren(itself, itself);
  EXPECT_EQ(Shape(itself), "root(a(b) c a(b) c)");
}

TEST(TreeTool, MarksEverythingBelowButFoldersOnlyOnRequest) {
  const Label mark = [](const RNode* link) { return std::to_string(link->GetExtData()); };
  TreePtr tree = Tree("root(a b(c @f d(e) g()))");
  RNTool::MarkRNodeGoThrough(tree, 5, false);
  EXPECT_EQ(Shape(tree, mark), "0(5 0(5 @5 0(5) 0()))");
  RNTool::MarkRNodeGoThrough(tree["b"], 7, true);
  RNTool::MarkRNodeGoThrough(tree["a"], 1, true);
  RNTool::MarkRNodeGoThrough(nullptr, 1, true);
  EXPECT_EQ(Shape(tree, mark), "0(5 0(7 @7 7(7) 7()))");
}

TEST(TreeTool, FindsTheFirstDirectChildByExactNameAndType) {
  TreePtr tree = Tree("root(x(deep) News news news())");
  const auto find = [&](const Wide& name, tagNODETYPE type) {
    return RNTool::FindRNodeByName(tree, name, type);
  };
  EXPECT_EQ(find(W("news"), NT_URL), tree["News"]->next);
  EXPECT_EQ(find(W("news"), NT_FOLDER), tree->firstChild->prev);
  EXPECT_EQ(find(W("news"), NT_COLCT), nullptr);
  EXPECT_EQ(find(W("new"), NT_URL), nullptr);
  EXPECT_EQ(find(W("deep"), NT_URL), nullptr);
  tree["x"]->item->SetName(nullptr);
  EXPECT_EQ(find(W(""), NT_FOLDER), tree->firstChild);
  EXPECT_EQ(find(nullptr, NT_FOLDER), tree->firstChild);
}

TEST(TreeTool, OrderSortGoesThroughAllFolders) {
  TreePtr tree = Tree("root(a(ab abc) b(x(1 2) y A a) c() @z)");
  RNTool::SortFolderChildrenByOrder(tree);
  RNTool::SortFolderChildrenByOrder(nullptr);
  EXPECT_EQ(Shape(tree), "root(@z c() b(y x(2 1) A a) a(ab abc))");
}

TEST(TreeTool, ATreeOfAnyDepthNeedsNoStack) {
  constexpr int kLevels = 20'000;
  int marked = 0;
  std::string bottom;
  RunOnSmallStack(256 * 1024, [&] {
    TreePtr copy = Folder("copy");
    RNTool::AddAllFolderChildren(copy, Deep(kLevels));
    RNTool::MarkRNodeGoThrough(copy, 5, true);
    RNTool::SortFolderChildrenByOrder(copy);
    RNode* link = copy;
    for (; link->firstChild; link = link->firstChild) marked += link->firstChild->GetExtData() == 5;
    bottom = Shape(link->parent);
  });
  EXPECT_EQ(marked, kLevels + 1);
  EXPECT_EQ(bottom, "f(b a)");
}

}  // namespace vosmere::test::tree_tool
