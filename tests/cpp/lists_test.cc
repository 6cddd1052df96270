#include "vosmere/cpp/lists.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failing_memory.h"

namespace vosmere {
namespace {

/// Lists of collections as texts: "a b@x" are two addresses, the second with a local tree that
/// holds a page "x".
ColctList Make(const std::string& text) {
  ColctList list;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const std::string word = text.substr(at, end - at), address = word.substr(0, word.find('@'));
    CColctNode& colct = *Append(list, NewCollection(address));
    SetAddress(colct, address);
    if (word != address)
      Add<CUrlNode>(colct, word.substr(address.size() + 1));
    else
      DeleteTree(colct.GetLocRNodeRoot()), colct.SetLocRNodeRoot(nullptr);
    at = end + 1;
  }
  return list;
}

std::string Shape(const ColctList& list) {
  std::string shape;
  for (CColctNode& colct : Each(list)) {
    shape += (shape.empty() ? "" : " ") + AddressOf(colct);
    for (CUrlNode& page : Pages(colct)) shape += "@" + NameOf(page);
  }
  return shape;
}

TEST(ColctList, LosesNoLocalTree) {
  const long before = test::LiveAllocations();
  {
    const struct {
      const char *list, *fresh, *merged, *gone;
    } cases[] = {
        {"a@x b@y c", "b d@z", "b@y d@z", "a@x c"},  // b keeps its items
        {"a b", "a@x b@y c", "a@x b@y c", ""},       // there were no items to keep
        {"a@x", "a@y", "a@x", ""},                   // the old items are kept
        {"a@x a@y", "a", "a@y", ""},                 // of two equal addresses the last
        {"a@x b", "", "", "a@x b"},
        {"", "a@x", "a@x", ""},
        {"a@x", "b@y b@z", "b@y b@z", "a@x"},
    };
    for (const auto& c : cases) {
      ColctList list = Make(c.list);
      const ColctList gone = Merge(list, Make(c.fresh));
      EXPECT_EQ(Shape(list), c.merged) << c.list << " and " << c.fresh;
      EXPECT_EQ(Shape(gone), c.gone) << c.list << " and " << c.fresh;
    }
    ColctList list = Make("a@x b a@y c@z b");
    Join(list, Make("c d"));
    EXPECT_TRUE(RemoveDuplicates(list));
    EXPECT_FALSE(RemoveDuplicates(list));
    EXPECT_EQ(Shape(list), "a@x b c@z d");
    EXPECT_TRUE(RemoveAddress(list, "a"));
    EXPECT_FALSE(RemoveAddress(list, "A"));
    EXPECT_EQ(Shape(list), "b c@z d");
    EXPECT_EQ(NameOf(*FindIn(list, AtAddress{"d"})), "d");
    EXPECT_EQ(FindIn(list, AtAddress{"x"}), nullptr);
    const ColctList other = std::move(list);
    EXPECT_EQ(Shape(list) + Shape(other), "b c@z d");
  }
  EXPECT_EQ(test::LiveAllocations(), before);
}

TEST(Merge, KeepsTheNetworkSideUnlessTold) {
  for (const bool keep : {true, false}) {
    ColctList list = Make("a"), fresh = Make("a");
    FindIn(list, Named{"a"})->GetColctNetData()->SetOwner(Wide("Ann"));
    EXPECT_EQ(Merge(list, std::move(fresh), keep), nullptr);
    EXPECT_EQ(TextView(FindIn(list, Named{"a"})->GetColctNetData()->GetOwner()) == "Ann", keep);
    EXPECT_TRUE(list->mark);
  }
}

TEST(Lists, MakeTheirItems) {
  FtpSiteList sites;
  Append(sites).SetTitle(Wide("one"));
  CFtpConBase& site = Append(sites);
  EXPECT_EQ(Append(sites, FtpSite()), nullptr);
  site.GetFtpWebAddress()->Add(Wide("Home"), Wide("http://a.example/"));
  EXPECT_EQ(sites->next->data, &site);
  EXPECT_EQ(sites->next->next, nullptr);
  for (const auto& address : Each(site.GetFtpWebAddress()->GetHead()))
    EXPECT_EQ(TextView(address.GetName()), "Home");

  ColctList list = Make("a@x");
  ColctItemNameList names;
  Append(names).SetColctID(Wide("C"));
  FindIn(list, Named{"a"})->SetUUID(Wide("C"));
  names->item->SetItemID(Wide("I"));
  EXPECT_FALSE(Resolve(*names->item, list));
  CUrlNode* const page = Find<CUrlNode>(*FindIn(list, Named{"a"}), "x");
  page->SetUUID(Wide("I"));
  EXPECT_TRUE(Resolve(*names->item, list));
  EXPECT_EQ(names->item->GetRefUrlNode(), page);
}

std::string Names(const CEnginePool& pool) {
  std::string names;
  for (const CEngineNode& engine : Engines(pool)) names += NameOf(engine) + " ";
  return names;
}

TEST(EngineList, OwnsItsEngines) {
  const EnginePool pool = NewEnginePool();
  AddEngine(*pool, "Web", "http://w.example/?q=%s");
  CEngineNode& images = AddEngine(*pool, "Images", "http://i.example/?q=%s", "image");
  const EnginePool copy = Copy(*pool);
  const Item<CEngineNode> removed = RemoveEngine(*pool, images);
  EXPECT_EQ(RemoveEngine(*pool, images), nullptr);
  EXPECT_EQ(TextView(removed->GetSearchType()), "image");
  EXPECT_EQ(TextView(Each(pool->GetREngineItemHead()).begin().operator*().GetSearchType()), "web");
  AddEngine(*copy, Copy(*removed));
  EXPECT_EQ(AddEngine(*copy, nullptr), nullptr);
  EXPECT_EQ(Names(*pool), "Web ");
  EXPECT_EQ(Names(*copy), "Web Images Images ");
}

std::string Shown(const CUrlNode& page) {
  std::string tags;
  for (const TextView tag : Tags(page)) tags += tag + ";";
  return tags;
}

TEST(Tags, OfPagesAndGroups) {
  const Item<CUrlNode> page(CUrlNode::New());
  EXPECT_EQ(Shown(*page), "");
  SetTags(*page, "news, feeds News");
  AddTag(*page, "two words");
  AddTag(*page, "FEEDS");
  EXPECT_EQ(Shown(*page), "news;feeds;two words;");
  EXPECT_TRUE(HasTag(*page, "Feeds") && !HasTag(*page, "feed") && !HasTag(*page, nullptr));
  SetTags(*page, nullptr);
  EXPECT_EQ(Shown(*page), "");

  CTagStore store;
  CTagGroup& group = AddGroup(store, "R&D");
  AddTag(group, "t1");
  AddTag(group, "t2", 7);
  int count = 0;
  for (const CTagGroup& each : Groups(store))
    for (const CTagItem& tag : Tags(each)) count += tag.GetCount();
  EXPECT_EQ(count, 8);
  const CTagGroup& unnamed = AddGroup(store, nullptr);
  EXPECT_EQ(store.GetDefaultGroup(), &unnamed);
}

}  // namespace
}  // namespace vosmere
