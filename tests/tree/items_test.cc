// The items of a tree: what they hold, what their setters take, and what a copy keeps.
#include <array>
#include <sstream>
#include <utility>

#include "tests/support/jobs.h"
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

std::array<const WChar*, 6> Texts(CUrlNode* page) {
  return {page->GetName(), page->GetDescription(), page->GetUUID(),
          page->GetUrl(),  page->GetAuthor(),      page->GetRelationUrl()};
}

/// All that a web page holds but its link.
std::string Fields(CUrlNode* page) {
  int state = 0;
  const bool checkedIn = page->HasCheckedIn(&state);
  const CNodeStat* const stat = page->GetNodeStat();
  const CUrlProp* const prop = page->GetUrlProp();
  std::ostringstream all;
  for (const WChar* text : Texts(page)) all << Utf8(text) << '|';
  all << page->GetVersion() << ' ' << page->GetOrder() << ' ' << state << checkedIn << ' '
      << page->GetBaseBuild() << ' ' << page->IsDeleted() << ' ' << page->GetNodeData() << '|'
      << Times(*stat) << ' ' << stat->IsUnread() << ' ' << stat->GetFlag() << '|'
      << page->GetItemType() << ' ' << prop->GetFileType() << ' ' << Utf8(prop->GetFileExtension())
      << '|' << Shown(prop->GetTagsHead()) << '|' << prop->DoNeedSaveKeyWords()
      << (prop->GetRefColctRNode() != nullptr);
  return all.str();
}

TEST(Items, StartWithTheClocksTimeAndACopyHasEverythingButTheLinkAndWhatIsToBeSaved) {
  const SteppedClock clock(1000, 0, 1);  // which goes on with each reading
  const TreePtr tree = Page(""), colct(NewLink(NT_COLCT, "c"));
  auto* const page = static_cast<CUrlNode*>(tree->item);
  EXPECT_EQ(Fields(page),
            "|||about:blank|(null)|(null)|1 1 21 0 0 0|1000 1000 1000 0 0|0 0 (null)||00");
  page->SetName(W("n"));
  page->SetDescription(W("d"));
  page->SetUUID(W("i"));
  page->SetUrl(W("u"));
  page->SetAuthor(W("a"));
  page->SetRelationUrl(W("r"));
  page->SetVersion(2);
  page->SetOrder(3);
  page->SetCheckedIn(-2);
  page->SetBaseBuild(5);
  page->SetAsDeleted(true);
  page->SetNodeData(6);
  page->GetNodeStat()->SetStatTime(7, 8, 9, ~0u);
  page->GetNodeStat()->MarkAsUnread(true);
  page->GetNodeStat()->SetFlag(10);
  page->SetItemType(IT_FILE);
  page->GetUrlProp()->SetFileType(FT_XLS);
  page->GetUrlProp()->SetFileExtension(W("xls"));
  page->GetUrlProp()->SetTagsList(MakeTags("News sport"));
  page->GetUrlProp()->SetNeedSaveKeyWords(true);
  page->GetUrlProp()->SetRefColctRNode(colct);
  const std::string filled = Fields(page);
  EXPECT_EQ(filled.substr(filled.size() - 2), "11");

  const ItemPtr<CUrlNode> copy(CUrlNode::New(page));
  ExpectNullAtEachFailure([=] { return CUrlNode::New(page); }, CBaseNode::Delete);
  page->SetName(W("changed"));
  page->GetUrlProp()->SetFileExtension(nullptr);
  EXPECT_EQ(Fields(copy.get()), filled.substr(0, filled.size() - 2) + "00");
  EXPECT_EQ(copy->GetRNode(), nullptr);
}

TEST(Items, TextsAreCutKeptOrClearedByTheirLengthAndMayComeFromTheItemItself) {
  constexpr std::size_t kAny = 100'000;
  const std::string old = "old text";
  const struct {  // in the order of Texts()
    void (CUrlNode::*set)(const WChar* text);
    std::string ofNull;
    std::size_t longest;
    std::string ofLonger;
    bool systems = false;  ///< whether it is a system string
  } cases[] = {{&CUrlNode::SetName, "(null)", kAny, std::string(kAny + 1, 'x')},
               {&CUrlNode::SetDescription, "", kAny, std::string(kAny + 1, 'x')},
               {&CUrlNode::SetUUID, "", 36, std::string(36, 'x')},
               {&CUrlNode::SetUrl, "(null)", 2084, old, true},
               {&CUrlNode::SetAuthor, "(null)", 2084, "(null)"},
               {&CUrlNode::SetRelationUrl, "(null)", 2084, "(null)"}};
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const auto& c = cases[i];
    const auto item = New<CUrlNode>();
    const auto after = [&](const WChar* text) {
      (item.get()->*c.set)(text);
      return Utf8(Texts(item.get())[i]);
    };
    for (const auto& [text, expected] : {std::pair(Wide(nullptr), c.ofNull),
                                         {W(""), ""},
                                         {Repeated(c.longest), std::string(c.longest, 'x')},
                                         {Repeated(c.longest + 1), c.ofLonger}}) {
      after(W(old));
      EXPECT_EQ(after(text), expected) << i;
      EXPECT_EQ(Utf8(Texts(Copy(item).get())[i]), expected) << i;
    }
    after(W("Straße 😀"));
    EXPECT_EQ(after(Texts(item.get())[i] + 1), "traße 😀");

    after(W(old));
    const Wide fresh = W("fresh");
    {
      const FailingMemory memory(0);
      (item.get()->*c.set)(fresh);
    }
    const bool fails = c.systems ? kSystemStringsFail : c.longest > 36;
    EXPECT_EQ(Utf8(Texts(item.get())[i]), fails ? old : "fresh") << i;
  }
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
