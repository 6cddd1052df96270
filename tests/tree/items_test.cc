// The items of a tree, beyond their texts and copies (tests/fields_test.cc).
#include <sstream>

#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/tree/name_value_pair.h"
#include "vosmere/tree/properties.h"

namespace vosmere::test::items {

using Tags = CUrlProp::TagList;

/// The caller owns them.
Tags* MakeTags(const std::string& text) {
  const Wide cut = W(text);
  return CUrlProp::GenerateRBstrItemList(const_cast<WChar*>(cut.get()));
}

std::string Shown(const Tags* head) {
  return Row(head, [](const Tags* cell) { return Utf8(cell->data); });
}

std::string Times(const CNodeStat& stat) {
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  stat.GetStatTime(nullptr, nullptr, nullptr);
  std::ostringstream times;
  times << added << ' ' << modified << ' ' << lastVisited;
  return times.str();
}

TEST(Items, OnlyAPlainAddressIsAnUrlAndOnlyState2IsCheckedIn) {
  const auto page = New<CUrlNode>();
  for (const auto type : {IT_URL, IT_NOTE, IT_WEBPAGE, IT_FILE}) {
    page->SetItemType(type);
    EXPECT_EQ(page->HasUrl(), type == IT_URL);
  }
  page->SetItemType(IT_URL);
  page->SetUrl(W(""));
  EXPECT_TRUE(page->HasUrl());
  page->SetUrl(nullptr);
  EXPECT_FALSE(page->HasUrl());
  for (const int state : {0, 1, 2, 3, -2}) {
    page->SetCheckedIn(state);
    EXPECT_EQ(page->HasCheckedIn(nullptr), state == 2) << state;
  }
}

TEST(Items, TimesAreSetByAMask) {
  for (ULONG mask = 0; mask < 8; ++mask) {
    CNodeStat stat;
    stat.SetStatTime(1, 2, 3, ~0u);
    stat.SetStatTime(-1, -2, -3, mask);
    EXPECT_EQ(Times(stat), std::string(mask & 1 ? "-1" : "1") + (mask & 2 ? " -2" : " 2") +
                               (mask & 4 ? " -3" : " 3"));
    CNodeStat fresh;
    fresh.SetStatTime(1, 2, 3, mask);
    EXPECT_EQ(CNodeStat(fresh).GetSetTimes(), mask);
  }
}

TEST(TreeLink, NewLeavesTheBackLinkAloneAndNew2SetsIt) {
  const auto item = New<CFolderNode>();
  RNode* const first = RNode::New(item.get(), NT_FOLDER);
  EXPECT_TRUE(IsDetached(first));
  EXPECT_EQ(item->GetRNode(), nullptr);
  RNode* const second = RNode::New2(item.get(), NT_FOLDER);
  EXPECT_EQ(item->GetRNode(), second);
  for (RNode* link : {first, second, RNode::New2(nullptr, NT_URL)}) RNode::Delete(link);
  EXPECT_EQ(Utf8(item->GetName()), "") << "a destroyed link leaves its item alive";
  const FailingMemory memory(0);
  EXPECT_EQ(RNode::New2(item.get(), NT_URL), nullptr);
  EXPECT_EQ(item->GetRNode(), nullptr);
}

TEST(UrlProp, SplitsTagsAndLeavesOutRepetitions) {
  struct {
    const char *text, *tags;
  } const cases[] = {{"", ""},
                     {" ,;\t\r\n", ""},
                     {"News, news;;sport\tNEWS", "News sport"},
                     {";a ", "a"},
                     {"a\rb\nc,d;e f\tg", "a b c d e f g"},
                     {"É é", "É é"},
                     {"a.b/c a", "a.b/c a"}};
  for (const auto& c : cases) {
    Tags* const tags = MakeTags(c.text);
    EXPECT_EQ(Shown(tags), c.tags) << c.text;
    CUrlProp::DeleteTagsList(tags);
  }
  EXPECT_EQ(CUrlProp::GenerateRBstrItemList(nullptr), nullptr);
  WChar text[] = {'a', ' ', 'b', ' ', 'c', 0};
  const auto make = [&] {
    text[1] = text[3] = ' ';
    return CUrlProp::GenerateRBstrItemList(text);
  };
  AtEachFailure(make, [](Tags* tags, bool failed) {
    const std::string made = Shown(tags);
    EXPECT_EQ(made, std::string("a b c").substr(0, failed ? made.size() : 5));
    CUrlProp::DeleteTagsList(tags);
  });
}

TEST(UrlProp, HasATagInAnyLetterCaseUntilTheyAreDetached) {
  Tags* tags = nullptr;
  {
    CUrlProp prop;
    prop.SetTagsList(MakeTags("News sport"));
    EXPECT_TRUE(prop.HasTag(W("SPORT")));
    for (const Wide& other : {W("spor"), W("sports"), Wide(nullptr)})
      EXPECT_FALSE(prop.HasTag(other)) << Utf8(other);
    tags = prop.DetachTagsHead();
    EXPECT_FALSE(prop.HasTag(W("sport")));
  }
  EXPECT_EQ(Shown(tags), "News sport");
  CUrlProp::DeleteTagsList(tags);
}

TEST(Properties, IsEmptyLooksAtTheDescriptionOnceThereIsANameOrAddress) {
  const Wide null(nullptr);
  struct {
    Wide name, description, url;
    bool empty;
  } const cases[] = {{null, W(""), null, true},       {null, W("text"), null, true},
                     {W("n"), W(""), null, false},    {W("n"), null, null, false},
                     {W("n"), W("text"), null, true}, {null, W("text"), W("u"), true},
                     {W(""), W(""), null, false},     {null, W(""), W("u"), false}};
  for (const auto& c : cases) {
    CProperties properties;
    EXPECT_EQ(Utf8(properties.GetDescription()), "");
    properties.SetName(c.name);
    properties.SetDescription(c.description);
    properties.SetUrl(c.url);
    EXPECT_EQ(Utf8(properties.GetDescription()), Utf8(c.description)) << "null too";
    EXPECT_EQ(properties.IsEmpty(), c.empty)
        << Utf8(c.name) << "/" << Utf8(c.description) << "/" << Utf8(c.url);
  }
}

TEST(NameValuePair, FindsTheFirstNameInAnyLetterCase) {
  const Wide rows[][2] = {{nullptr, W("nameless")},
                          {W("Charset"), W("utf-8")},
                          {W("charset"), W("second")},
                          {W("empty"), nullptr}};
  const long before = LiveAllocations();
  CNameValuePair* list = nullptr;
  for (const auto& [name, value] : rows) {
    CNameValuePair* const pair = CNameValuePair::New();
    pair->SetName(name);
    pair->SetValue(value);
    EXPECT_EQ(pair->IsPair(), name.get() && value.get());
    chain::Append(list, pair);
  }
  EXPECT_EQ(Utf8(CNameValuePair::FindValue(list, W("CHARSET"))), "utf-8");
  for (const Wide& name : {W("charse"), W(""), W("empty"), Wide(nullptr)})
    EXPECT_EQ(CNameValuePair::FindValue(list, name), nullptr) << Utf8(name);
  EXPECT_EQ(CNameValuePair::FindValue(nullptr, W("charset")), nullptr);
  CNameValuePair::DeleteList(list);
  EXPECT_EQ(LiveAllocations(), before);
}

}  // namespace vosmere::test::items
