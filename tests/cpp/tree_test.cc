#include "vosmere/cpp/tree.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "tests/support/failing_memory.h"
#include "tests/support/tree.h"
#include "vosmere/engines/engine_pool.h"

namespace vosmere {
namespace {

using test::Shape;

/// See tests/support/tree.h.
Tree Make(const std::string& text) {
  return Tree(test::Tree(text).release());
}

RNode* At(const Tree& tree, const char* name) {
  return Find(tree, name)->GetRNode();
}

template <class Items>
std::string Names(const Items& items) {
  std::string names;
  for (CBaseNode& item : items) names += (names.empty() ? "" : " ") + NameOf(item);
  return names;
}

template <class Node>
concept CanBeAdded = requires(Tree& tree) {
  Add<Node>(tree, "x");
};
static_assert(CanBeAdded<CFolderNode> && CanBeAdded<CUrlNode> && CanBeAdded<CColctNode>);
static_assert(!CanBeAdded<CEngineNode> && !CanBeAdded<CEnginePool> && !CanBeAdded<CBaseNode>);
template <class Node>
concept HasAddress = requires(Tree& tree) {
  Add<Node>(tree, "x", "http://a.example/");
};
static_assert(HasAddress<CUrlNode> && HasAddress<CColctNode> && !HasAddress<CFolderNode>);
template <class Handle>
concept IsPlace = requires(Handle handle) {
  Pages(std::move(handle));
};
static_assert(!IsPlace<Tree> && !IsPlace<Collection>, "a loop would outlive it");
static_assert(std::forward_iterator<Range<CUrlNode>::iterator>);

TEST(Walk, GoesInTheOrderOfDocumentsAndStaysBelow) {
  const Tree tree = Make("r(a b(c d() @e) @f g(h(i)) j)");
  EXPECT_EQ(Names(Pages(tree)), "a c i j");
  EXPECT_EQ(Names(Folders(tree)), "b d g h");
  EXPECT_EQ(Names(Collections(tree)), "e f");
  EXPECT_EQ(Names(Items(tree)), "a b c d e f g h i j");
  EXPECT_EQ(Names(Children<CBaseNode>(tree)), "a b f g j");
  EXPECT_EQ(Names(Children<CUrlNode>(tree)), "a j");
  EXPECT_EQ(Names(Items(At(tree, "b"))), "c d e");
  EXPECT_EQ(Names(Items(At(tree, "h"))), "i");
  for (RNode* const nowhere : {At(tree, "a"), At(tree, "d"), At(tree, "f"), (RNode*)nullptr})
    EXPECT_EQ(Names(Items(nowhere)), "");
  EXPECT_EQ(Names(Items(Tree() ? tree : *std::make_unique<Tree>())), "");
}

TEST(Walk, MayRemoveAndAddOnItsWay) {
  const Tree tree = Make("r(a b(c d() @e) @f g(h(i)) j)");
  for (CUrlNode& page : Pages(tree)) Remove(page);
  EXPECT_EQ(Shape(tree.get()), "r(b(d() @e) @f g(h()))");
  for (CFolderNode& folder : Folders(tree)) Add<CUrlNode>(folder, "x");
  EXPECT_EQ(Shape(tree.get()), "r(b(d(x) @e x) @f g(h(x) x))");
  EXPECT_EQ(RemoveIf<CUrlNode>(tree, [](CUrlNode& page) { return NameOf(page) == "x"; }), 4);
  EXPECT_EQ(RemoveIf<CFolderNode>(tree, [](CFolderNode& f) { return !f.GetRNode()->firstChild; }),
            3)
      << "g is empty once h has gone";
  EXPECT_EQ(Shape(tree.get()), "r(b(@e) @f)");
}

TEST(Walk, NeedsNoStackForDeepTrees) {
  const Tree tree = NewTree("r");
  CFolderNode* deepest = As<CFolderNode>(tree);
  for (int i = 0; i < 100000; ++i) deepest = Add<CFolderNode>(deepest, "f");
  Add<CUrlNode>(deepest, "end");
  const Tree copy = Copy(tree);
  EXPECT_EQ(NameOf(*Find<CUrlNode>(copy, "end")), "end");
  EXPECT_EQ(RemoveIf<CFolderNode>(copy, Named{"f"}), 100000);
}

TEST(Find, ComparesExactlyAndByKind) {
  const Tree tree = NewTree("r");
  CFolderNode* const news = Add<CFolderNode>(tree, "News");
  CColctNode* const feed = Add<CColctNode>(news, "News", "http://a.example/");
  CUrlNode* const page = Add<CUrlNode>(news, "Näws", u"http://a.example/");
  page->SetUUID(Wide("id"));
  EXPECT_EQ(Find<CFolderNode>(tree, "News"), news);
  EXPECT_EQ(Find<CColctNode>(tree, Named{"News"}), feed);
  EXPECT_EQ(Find<CUrlNode>(tree, u"Näws"), page);
  EXPECT_EQ(Find(tree, "news"), nullptr);
  EXPECT_EQ(Find<CUrlNode>(tree, AtAddress{"http://a.example/"}), page)
      << "a collection is not a page";
  EXPECT_EQ(Find<CColctNode>(tree, AtAddress{"http://a.example/"}), feed);
  EXPECT_EQ(Find(tree, WithIdentity{"id"}), page);
  EXPECT_EQ(Find(tree, [](CBaseNode& item) { return item.GetRNode()->type == NT_URL; }), page);
  EXPECT_EQ(Find(Tree(nullptr) ? tree : *std::make_unique<Tree>(), "News"), nullptr);
  EXPECT_EQ(Find<CUrlNode>(feed, "Näws"), nullptr) << "it has no local tree";
}

TEST(Move, RefusesWhatWouldLoseSomething) {
  Tree tree = Make("r(a b(c d(e) @g) @f)"), other = Make("s(t)");
  const auto at = [&](const char* name) { return At(tree, name); };
  RNode* const nowhere = nullptr;
  Find<CColctNode>(tree, "g")->SetLocRNodeRoot(other.get());
  const struct {
    RNode *what, *to, *before;
  } refused[] = {{nowhere, at("b"), nowhere},        {at("a"), nowhere, nowhere},
                 {tree.get(), other.get(), nowhere}, {at("b"), at("b"), nowhere},
                 {at("b"), at("d"), nowhere},        {at("b"), at("a"), nowhere},
                 {at("a"), at("f"), nowhere},        {at("a"), at("b"), at("e")},
                 {at("a"), at("b"), At(other, "t")}, {at("a"), at("b"), at("b")},
                 {at("b"), other.get(), nowhere},    {at("g"), other.get(), nowhere}};
  for (const auto& c : refused) EXPECT_FALSE(Move(c.what, c.to, c.before));
  EXPECT_FALSE(Add(at("a"), std::move(other)) || Add(at("d"), std::move(tree)) ||
               Add(nullptr, std::move(other)) || Add(tree, Tree()) || Add(other, std::move(tree)) ||
               Add(at("b"), std::move(other), at("e")));
  EXPECT_EQ(Add<CUrlNode>(nullptr, "x"), nullptr);
  EXPECT_EQ(Add<CUrlNode>(at("a"), "x"), nullptr);
  EXPECT_EQ(Remove(tree), nullptr);
  EXPECT_EQ(Remove(nullptr), nullptr);
  EXPECT_EQ(Shape(tree.get()), "r(a b(c d(e) @g) @f)");
  EXPECT_EQ(Shape(other.get()), "s(t)");
}

TEST(Move, MovesWithinAndBetweenTrees) {
  Tree tree = Make("r(a b(c d(e)) @f)"), other = Make("s(t)");
  EXPECT_TRUE(Move(At(tree, "d"), tree, At(tree, "a")));
  EXPECT_TRUE(Move(At(tree, "f"), tree, At(tree, "f")));
  EXPECT_EQ(Shape(tree.get()), "r(d(e) a b(c) @f)");
  EXPECT_TRUE(Move(Find<CFolderNode>(tree, "d"), other, At(other, "t")));
  Tree removed = Remove(Find(tree, "b"));
  EXPECT_TRUE(Add(Find<CFolderNode>(other, "d"), std::move(removed), At(other, "e")));
  EXPECT_EQ(removed, nullptr);
  EXPECT_EQ(Shape(tree.get()) + Shape(other.get()), "r(a @f)s(d(b(c) e) t)");
}

TEST(Copy, IsWholeOrNothing) {
  Tree tree = Make("r(a b(c d()) @f)");
  const Collection local = NewCollection("local");
  Add<CUrlNode>(local, "i", "http://i.example/");
  Find<CColctNode>(tree, "f")->SetLocRNodeRoot(local->GetLocRNodeRoot());
  const Tree copy = Copy(tree);
  EXPECT_EQ(Shape(copy.get()), Shape(tree.get()));
  EXPECT_EQ(Find<CColctNode>(copy, "f")->GetLocRNodeRoot(), nullptr) << "it has an owner";
  EXPECT_EQ(Names(Pages(Find<CColctNode>(tree, "f"))), "i");
  const Collection twin = Copy(*local);
  EXPECT_EQ(Names(Pages(twin)), "i");
  EXPECT_NE(Find<CUrlNode>(twin, "i"), Find<CUrlNode>(local, "i"));
  EXPECT_EQ(Copy(Tree()), nullptr);
  EXPECT_EQ(NewTree(Item<CUrlNode>()), nullptr);

  const long before = test::LiveAllocations();
  bool failed = true;
  for (int successes = 0; failed; ++successes) {
    try {
      const test::FailingMemory memory(successes);
      const Tree one = Copy(tree);
      const Collection two = Copy(*local);
      Add<CUrlNode>(tree, "x", "http://x.example/");
      failed = memory.Failed();
      Remove(Find(tree, "x"));
    } catch (const std::bad_alloc&) {
    }
    ASSERT_LT(successes, 200);
    ASSERT_EQ(test::LiveAllocations(), before) << successes;
    ASSERT_EQ(Shape(tree.get()), "r(a b(c d()) @f)");
  }
}

TEST(Sort, BeginsWithAAndTheEarliest) {
  Tree tree = Make("r(b C a)");
  int time = 0;
  for (CUrlNode& page : Pages(tree)) {
    ++time;
    page.GetNodeStat()->SetStatTime(time, 0, -time, CNodeStat::kAdded | CNodeStat::kLastVisited);
  }
  const struct {
    SortBy by;
    bool descending;
    const char* names;
  } cases[] = {{SortBy::kName, false, "a b C"},        {SortBy::kName, true, "C b a"},
               {SortBy::kAdded, false, "b C a"},       {SortBy::kAdded, true, "a C b"},
               {SortBy::kLastVisited, false, "a C b"}, {SortBy::kLastVisited, true, "b C a"}};
  for (const auto& c : cases) {
    Sort(tree, c.by, c.descending);
    EXPECT_EQ(Names(Pages(tree)), c.names);
  }
  Sort(nullptr);
}

}  // namespace
}  // namespace vosmere
