// Diff and merge: what holds for all trees, and a row for each rule.
#include "vosmere/cpp/merge.h"

#include <random>

#include "tests/support/edited_trees.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"

namespace vosmere::test::merge {

TEST(Merge, KeepsItsPromisesForAllTrees) {
  std::mt19937 random(17);
  bool identifies = true;
  const auto edited = [&](const char* name, const vosmere::Tree& from, std::size_t most) {
    std::string script(random() % most, '\0');
    for (char& byte : script) byte = static_cast<char>(random());
    return Machine(name, script, identifies).Edited(from);
  };
  const vosmere::Tree root = NewTree("root");
  for (int round = 0; round < 200; ++round, identifies = !identifies) {
    const vosmere::Tree base = edited("x", root, 90);
    const vosmere::Tree sides[] = {edited("a", base, 60), edited("b", base, 60),
                                   edited("c", base, 60)};
    ASSERT_EQ(MergeProblem(base, sides[0], sides[1], identifies), "") << round;
    Merger merge;
    int order[] = {0, 1, 2};
    vosmere::Tree first;
    do {
      const vosmere::Tree two = merge(base, sides[order[0]], sides[order[1]]);
      const vosmere::Tree three = merge(base, two, sides[order[2]]);
      if (!first) first = vosmere::Copy(three);
      ASSERT_EQ(merge.Differs(first, three), "") << "three machines, round " << round;
    } while (std::next_permutation(order, order + 3));
  }
}

/// The notation of tests/support/tree.h, where a name may be followed by =address and then by
/// #identity.
vosmere::Tree Written(const char* text) {
  if (!text) return nullptr;
  vosmere::Tree tree(test::Tree(text).release());
  for (CBaseNode& item : Items(tree)) {
    const std::string name = NameOf(item), front = name.substr(0, name.find_first_of("=#"));
    const std::size_t at = name.find('='), id = name.find('#');
    SetName(item, front);
    if (auto* const page = As<CUrlNode>(item); page && at != name.npos)
      SetAddress(*page, name.substr(at + 1, id - at - 1));
    if (id != name.npos) item.SetUUID(Wide(name.substr(id + 1)));
  }
  return tree;
}

TEST(Diff, SaysWhatDiffersItemByItem) {
  constexpr const char* kRows[][3] = {
      {"r(N(a=x) b)", "r(N(a=x) b)", ""},
      {"r(N(Daily=d) S())", "r(N() S(Day=d))", "~ S > Day: renamed from 'Daily'; moved from N\n"},
      {"r(N#1(a b))", "r(M#1(b) c)", "- N > a\n~ M: renamed from 'N'\n+ c\n"},
      {"r(a b c d e)", "r(b c e a d)",
       "~ e: moved among its siblings\n~ a: moved among its siblings\n"},
      {"r(a=x)", "r(a=y)", "~ a: address: 'x' -> 'y'\n"},
      {"r(a=x#1)", "r(b=y#1)", "~ b: renamed from 'a'; address: 'x' -> 'y'\n"},
      {"r(a=x a=x)", "r(a=x)", "- a\n"},
      {"r(N() M(N(a)))", "r(N(a) M(N()))", "- M > N > a\n+ N > a\n"},
      {"r(a)", "r(@a)", "- a\n+ a\n"},
  };
  for (const auto& [before, after, expected] : kRows) {
    const vosmere::Tree a = Written(before), b = Written(after);
    std::string lines;
    for (const ItemChange& change : Diff(a, b)) lines += ToString(change) + '\n';
    EXPECT_EQ(lines, expected) << before << " and " << after;
  }
}

TEST(Merge, PutsItemsWhereTheyBelong) {
  constexpr const char* kRows[][5] = {
      // The base, ours, theirs, the merged tree, the conflicts.
      {"r(a b)", "r(a c b)", "r(a b d)", "r(a c b d)", ""},
      {"r(a b c)", "r(a b c x)", "r(c a b)", "r(c x a b)", ""},
      {"r(a b c)", "r(b a c)", "r(c a b)", "r(b a c)", ""},
      {"r(a b)", "r(a)", "r(a b)", "r(a)", ""},
      {"r(F(a b))", "r()", "r(F(a b c))", "r(F(c))", "F removal;"},
      {"r(F(x#1 y))", "r(x#1)", "r(F(x#1 y z))", "r(F(z) x#1)", "F removal;"},
      {"r(A#1() B#2())", "r(A#1(B#2()))", "r(B#2(A#1()))", "r(A#1(B#2()))", "A folder;"},
      {"r(A#1() B#2() C#3())", "r(A#1(B#2()) C#3())", "r(C#3(A#1()) B#2())", "r(C#3(A#1(B#2())))",
       ""},
      {"r(A(x#1) B() C())", "r(A() B(x#1) C())", "r(A() B() C(x#1))", "r(A() B(x#1) C())",
       "x folder;"},
      {"r(F(p=x) G())", "r(F() G(p=y))", "r(F(p=y) G())", "r(F() G(p))", ""},
      {"r(F(p=x))", "r(F(p=y))", "r(G(p=x))", "r(G(p))", ""},
      // Without a base.
      {nullptr, "r(a b)", "r(b c)", "r(a b c)", ""},
      {nullptr, "r(a c)", "r(b c)", "r(a b c)", ""},
      {nullptr, "r(a)", "r(b)", "r(a b)", ""},
      {nullptr, "r(a=x)", "r(a=y b=x)", "r(a a)", "a name;"},
      {nullptr, "r(N(a=x) M())", "r(N() M(a=x))", "r(N(a) M(a))", ""},
      {nullptr, "r(a=x#1)", "r(b=y#1)", "r(a#1)", "a name;a address;"},
      {nullptr, "r(a#1)", "r(b#1 c#1)", "r(a#1 c)", "a name;"},
      {nullptr, "r(a=x)", "r(a=x#1)", "r(a#1)", ""},
      {nullptr, "r(a=x#2)", "r(a=x#1)", "r(a#1)", ""},
      {nullptr, nullptr, "r(a)", "r(a)", ""},
  };
  const auto label = [](const RNode* link) {
    const std::string identity = ToUtf8(link->item->GetUUID());
    return test::NameOf(link) + (identity.empty() ? "" : "#" + identity);
  };
  for (const auto& [base, ours, theirs, expected, conflicts] : kRows) {
    const Merged merged = Merge(Written(base), Written(ours), Written(theirs));
    EXPECT_EQ(Shape(merged.tree.get(), label), expected) << ours << " and " << theirs;
    const Merged again = Merge(Written(base), merged.tree, Written(theirs));
    EXPECT_EQ(Shape(again.tree.get(), label), expected) << ours << " and twice " << theirs;
    std::string found;
    for (const Conflict& c : merged.conflicts)
      found += c.place.substr(c.place.rfind(' ') + 1) + ' ' + c.what + ';';
    EXPECT_EQ(found, conflicts) << ours << " and " << theirs;
  }
  // Of moves that make a circle, the newest counts.
  const vosmere::Tree theirs = Written("r(B#2(A#1()))");
  Find<CFolderNode>(theirs, WithIdentity{"1"})->SetVersion(2);
  const Merged merged = Merge(Written("r(A#1() B#2())"), Written("r(A#1(B#2()))"), theirs);
  EXPECT_EQ(Shape(merged.tree.get(), label), "r(B#2(A#1()))");
}

void SetTimes(CUrlNode& page, LONG added, LONG modified) {
  page.GetNodeStat()->SetStatTime(added, modified, 0, CNodeStat::kAdded | CNodeStat::kModified);
}

TEST(Merge, OfNothingIsNothing) {
  const vosmere::Tree none, tree = Written("r(a b)");
  EXPECT_FALSE(Merge(tree, none, none).tree);
  EXPECT_EQ(Dump(Merge(none, none, tree).tree.get()), Dump(tree.get()));
}

TEST(Merge, SettlesFieldByField) {
  using Page = CUrlNode;
  struct {
    void (*ours)(Page& page);
    void (*theirs)(Page& page);
    const char* merged;
    const char* conflict;
  } constexpr kRows[] = {
      {[](Page& p) { SetName(p, "o"); }, [](Page& p) { SetDescription(p, "t"); }, "o t x,y 7", ""},
      {[](Page& p) { SetName(p, "o"); }, [](Page& p) { SetName(p, "t"); }, "o - x,y 7",
       "o: name: ours 'o', theirs 't'; took ours"},
      {[](Page& p) { SetName(p, "o"); }, [](Page& p) { SetName(p, "t"), SetTimes(p, 7, 9); },
       "t - x,y 7", "t: name: ours 'o', theirs 't'; took theirs"},
      {[](Page& p) { SetName(p, "o"), p.SetVersion(2); },
       [](Page& p) { SetName(p, "t"), SetTimes(p, 7, 9); }, "o - x,y 7",
       "o: name: ours 'o', theirs 't'; took ours"},
      {[](Page& p) { SetTags(p, "X z"); }, [](Page& p) { SetTags(p, "w x y Z"); }, "p - X,z,w 7",
       ""},
      {[](Page& p) { p.SetAsDeleted(true); }, [](Page& p) { p.SetVersion(5); }, "p - x,y 7 deleted",
       ""},
      {[](Page& p) { p.SetAsDeleted(true); }, [](Page& p) { AddTag(p, "z"); }, "p - x,y,z 7",
       "p: deleted: ours 'true', theirs 'false'; took theirs"},
      {[](Page& p) { SetTimes(p, 5, 7); }, [](Page& p) { SetTimes(p, 3, 7); }, "p - x,y 3", ""},
  };
  const auto pageIn = [](const vosmere::Tree& tree) -> Page& {
    return *Find<Page>(tree, WithIdentity{"1"});
  };
  for (const auto& row : kRows) {
    const vosmere::Tree base = Written("r(p=a#1)");
    SetTags(pageIn(base), "x y");
    SetTimes(pageIn(base), 7, 7);
    const vosmere::Tree ours = vosmere::Copy(base), theirs = vosmere::Copy(base);
    row.ours(pageIn(ours));
    row.theirs(pageIn(theirs));
    const Merged merged = Merge(base, ours, theirs);
    const Page& page = pageIn(merged.tree);
    LONG added;
    page.GetNodeStat()->GetStatTime(&added, nullptr, nullptr);
    std::string is = vosmere::NameOf(page) + " ", separator = "";
    is += DescriptionOf(page).empty() ? "- " : DescriptionOf(page) + " ";
    for (const TextView tag : Tags(page)) is += separator + tag, separator = ",";
    is += ' ' + std::to_string(added) + (page.IsDeleted() ? " deleted" : "");
    EXPECT_EQ(is, row.merged);
    EXPECT_EQ(merged.conflicts.empty() ? "" : ToString(merged.conflicts[0]), row.conflict);
  }
}

// With what is in its local tree: a page with a reference, and notes that only their texts tell.
TEST(Merge, MakesWholeCollections) {
  const auto with = [](const char* text) {
    Collection colct = NewCollection("feed");
    SetDescription(*Add<CUrlNode>(*colct, "note"), text);
    return colct;
  };
  const Collection ours = with("a"), theirs = with("b");
  ours->GetColctNetData()->SetOwner(W("me"));
  RNode* const note = ours->GetLocRNodeRoot()->firstChild;
  As<CUrlNode>(note)->GetUrlProp()->SetRefColctRNode(ours->GetLocRNodeRoot());
  const MergedCollection merged = Merge(ours, theirs);
  RNode* const root = merged.collection->GetLocRNodeRoot();
  EXPECT_EQ(Shape(root), "feed(note note)");
  EXPECT_EQ(As<CUrlNode>(root->firstChild)->GetUrlProp()->GetRefColctRNode(), root);
  EXPECT_EQ(Utf8(merged.collection->GetColctNetData()->GetOwner()), "me");
  EXPECT_TRUE(Diff(merged.collection, Merge(merged.collection, theirs).collection).empty());
  EXPECT_EQ(Diff(ours, theirs).size(), 2u) << "the owner, and the text of the note";
}

TEST(Merge, FindsTheGenerationThatBothHaveStartedFrom) {
  const auto built = [](const char* text, int build) {
    vosmere::Tree tree = Written(text);
    for (CBaseNode& item : Items(tree)) item.SetBaseBuild(build);
    return tree;
  };
  vosmere::Tree generations[] = {built("r(x#9)", 4), built("r(a#1 b#2)", 5), built("r(a#1 b#2)", 4),
                                 built("r(a#1)", 4)};
  const vosmere::Tree ours = built("r(b#2 c)", 4), theirs = built("r(a#1 d#3)", 4);
  EXPECT_EQ(FindBase(generations, ours, theirs), &generations[2]);
  EXPECT_EQ(FindBase(generations, ours, built("r(a#1)", 6)), nullptr);
}

TEST(Merge, MakesNothingWithoutMemory) {
  const vosmere::Tree base = Written("r(N(a=x#1) b)"), ours = Written("r(N(a=x#1) c)"),
                      theirs = Written("r(b N(d=x#1) e=f)");
  SetTags(*Find<CUrlNode>(theirs, "d"), "t");
  const auto merge = [&]() -> RNode* {
    try {
      return MergeTrees(base.get(), ours.get(), theirs.get(), TreeParts::kLinks, nullptr, nullptr);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  };
  DeleteTree(merge());
  if (kSystemStringsFail) ExpectNullAtEachFailure(merge, DeleteTree);
}

TEST(Merge, SavesIntoAFileThatOthersHaveChanged) {
  const TempFolder folder;
  const FilePath path(folder / "list.opml");
  const auto save = [&](const char* text) { ASSERT_TRUE(Save(path, Written(text))); };
  save("r(@a=x)");
  SaveOptions options;
  options.expected = *MarkOf(path);
  const vosmere::Tree base = *Load<vosmere::Tree>(path);
  vosmere::Tree ours = vosmere::Copy(base);
  Add<CColctNode>(ours, "ours", "o");
  save("r(@a=x @theirs=t)");
  EXPECT_EQ(Save(path, ours, options).error().fault, DocumentFault::kChanged);
  const Result<SavedMerge> saved = SaveMerged(path, base, ours, options);
  ASSERT_TRUE(saved) << saved.error();
  EXPECT_TRUE(saved->wasMerged);
  EXPECT_EQ(Shape(ours.get()), "r(@a @ours @theirs)");
  EXPECT_EQ(Shape(Load<vosmere::Tree>(path)->get()), "r(@a @ours @theirs)");
}

}  // namespace vosmere::test::merge
