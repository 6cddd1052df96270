#include "vosmere/tabs/tab_url.h"

#include <sstream>

#include "tests/support/test.h"
#include "vosmere/cpp/own.h"

namespace vosmere::test::tab_url {

/// The address of any byte serves as a dispatch.
char dispatches[256];

/// Addresses, each in the zone that its last digit names.
class TabUrlTest : public testing::Test, public CTabUrlData {
 protected:
  const Hooked<SetSecurityZoneCheck> zones{
      [](const WChar* url) { return static_cast<LONG>(WideView(url)[WideLength(url) - 1] - '0'); }};

  /// Adds addresses written as `a1/p`, by dispatch p (`-` is null); `^` before makes it the page.
  void Add(const std::string& addresses) {
    std::istringstream words(addresses);
    for (std::string word; words >> word;) {
      const bool page = word[0] == '^';
      const char by = word.back();
      AddUrl(W(word.substr(page, word.size() - page - 2)), page,
             by == '-' ? nullptr : dispatches + by);
    }
  }

  std::string Urls() {
    CTabUrlItem* list = nullptr;
    const int count = GetUrlItemList(&list);
    EXPECT_EQ(count, GetNumberItem());
    const std::string urls = Row(list, [](auto* item) {
      EXPECT_FALSE(item->IsTopLevel() || item->GetDispatch());
      EXPECT_EQ(item->GetZone(), Utf8(item->GetUrl()).back() - '0');
      return Utf8(item->GetUrl());
    });
    CTabUrlItem::DeleteList(list);
    return urls;
  }

  /// The zone to show, a mark when a frame is less trusted, and the number of addresses.
  std::string Zone() {
    bool lessTrusted = true;
    int count = -1;
    const LONG zone = GetZone(&lessTrusted, &count);
    return std::to_string(zone) + (lessTrusted ? "!" : "") + " of " + std::to_string(count);
  }
};

TEST_F(TabUrlTest, KeepsOnePageAndOneAddressForEachDispatch) {
  struct {
    const char *added, *urls, *zone;
  } const cases[] = {
      {"", "", "5 of 0"},
      {"^a3/p", "a3", "3 of 1"},
      {"a1/p b4/q c2/r", "a1 b4 c2", "4 of 3"},       // no page: the highest zone
      {"^a1/p b3/q", "a1 b3", "1! of 2"},             // a frame is less trusted
      {"^a3/p b3/q c1/r", "a3 b3 c1", "3 of 3"},      // no frame is less trusted
      {"^a1/p b3/q ^c2/r", "b3 c2", "2! of 2"},       // a new page frees the old one
      {"a1/p b2/q c3/p", "b2 c3", "3 of 2"},          // the first with its dispatch goes
      {"^a1/p b2/q ^c3/q", "c3", "3 of 1"},           // both
      {"a1/- b2/-", "b2", "2 of 1"},                  // null is a dispatch too
      {"a1/p A1/q", "a1 A1", "1 of 2"},               // letter case counts
      {"^a1/p b2/q ^b2/r c3/q", "b2 c3", "2! of 2"},  // a frame becomes the page
      {"^a1/p a1/q b3/p", "a1 b3", "1! of 2"},        // a page stays the page under a new dispatch
      {"a1/p b2/q b2/p c3/q", "a1 b2 c3", "3 of 3"},  // a known address frees no other
      {"^a1/p ^a1/q b3/q", "b3", "3 of 1"},
  };
  for (const auto& c : cases) {
    ClearData();
    Add(c.added);
    EXPECT_EQ(Urls(), c.urls) << c.added;
    EXPECT_EQ(Zone(), c.zone) << c.added;
  }
}

TEST_F(TabUrlTest, IgnoresWhatIsNoAddressAndTheOneHundredAndFiftySecond) {
  for (const Wide& url : {Wide(nullptr), W(""), W("about:blank"), Repeated(2085)})
    AddUrl(url, true, nullptr);
  EXPECT_EQ(GetNumberItem(), 0);
  AddUrl(Repeated(2084), true, nullptr);
  AddUrl(W("About:blank"), false, dispatches);
  EXPECT_EQ(GetNumberItem(), 2);
  ClearData();
  for (int i = 0; i < 152; ++i) AddUrl(W(std::to_string(i)), i == 0, dispatches + i);
  EXPECT_EQ(GetNumberItem(), 151);
  Add("^7/x");  // known, but no longer looked up
  EXPECT_EQ(Urls().substr(0, 4), "0 1 ");
}

TEST_F(TabUrlTest, DerivedClassesHaveItsSteps) {
  EXPECT_EQ(GetHighestZone(), 0);
  Add("^a1/p b4/q c2/r");
  GetHead()->next->next->SetTopLevel(true);
  EXPECT_EQ(Zone(), "2! of 3") << "the last page counts";
  UnsetTopLevelFlag();
  EXPECT_EQ(Zone(), "4 of 3");
  EXPECT_FALSE(FilterOutTheSameDispatch(dispatches + int{'x'}));
  EXPECT_FALSE(DeleteTabUrlItem(GetHead()->next));
  EXPECT_TRUE(DeleteTabUrlItem(GetHead()));
  EXPECT_EQ(Urls(), "c2");
}

TEST_F(TabUrlTest, WithoutMemoryNothingIsAddedAndNothingLost) {
  Add("^a1/p b2/q");
  const Wide url = W("c3");
  unsigned long lost = LostTexts();
  {
    const FailingMemory memory(1);
    AddUrl(url, true, dispatches + int{'q'});
  }
  EXPECT_EQ(Urls(), "a1 b2");
  EXPECT_EQ(LostTexts(), ++lost);
  int count = 0;
  const auto list = [&] {
    CTabUrlItem* copies = nullptr;
    count = GetUrlItemList(&copies);
    return copies;
  };
  AtEachFailure(list, [&](CTabUrlItem* copies, bool failed) {
    EXPECT_EQ(copies == nullptr, failed);
    EXPECT_EQ(count, failed ? 0 : 2);
    EXPECT_EQ(LostTexts(), lost += failed);
    CTabUrlItem::DeleteList(copies);
  });
}

TEST_F(TabUrlTest, ThreadsMayUseOneTab) {
  AtOnce(4, [this](int thread) {
    const char by = "pqrs"[thread];
    for (int round = 0; round < 300; ++round) {
      const std::string number = std::to_string(round % 7 * 10 + by % 4);
      Add((round % 5 ? "" : "^") + number + "/" + by);
      bool lessTrusted = false;
      int count = 0;
      EXPECT_LE(GetZone(&lessTrusted, &count), 5);
      CTabUrlItem* list = nullptr;
      count = GetUrlItemList(&list);
      EXPECT_LE(count, 4) << "one for each dispatch";
      CTabUrlItem::DeleteList(list);
      if (round % 100 == 99) ClearData();
    }
  });
}

TEST(UrlMap, GroupsPagesAndChangesTheirAddressAlsoToOneOfTheirOwn) {
  const Item<CUrlNode> a(CUrlNode::New()), b(CUrlNode::New()), stranger(CUrlNode::New());
  const UrlMapEntry entry(CUrlMapItem::New(Repeated(2085), a.get()));
  EXPECT_EQ(entry->GetUrl(), nullptr);
  EXPECT_FALSE(entry->HasDuplication());
  EXPECT_TRUE(entry->AddUrlNode(b.get()));
  EXPECT_TRUE(entry->HasDuplication());
  const auto expectUrl = [&](const char* expected) {
    for (const WChar* url : {a->GetUrl(), b->GetUrl(), entry->GetUrl()})
      EXPECT_EQ(Utf8(url), expected);
  };
  entry->ModifyURL(a->GetUrl());
  expectUrl("about:blank");
  entry->ModifyURL(W("new"));
  for (const Wide& ignored : {Wide(nullptr), Repeated(2085)}) entry->ModifyURL(ignored);
  expectUrl("new");

  EXPECT_EQ(entry->DeleteUrlNode(stranger.get()), 2);
  EXPECT_EQ(entry->DeleteUrlNode(a.get()), 1);
  EXPECT_EQ(entry->GetUrlListHead()->data, b.get());
  EXPECT_EQ(entry->DeleteUrlNode(b.get()), 0);
  EXPECT_FALSE(entry->HasDuplication());
}

TEST(UrlMap, RemovesTheFirstCellOfAPage) {
  std::mt19937 random(9);
  std::vector<Item<CUrlNode>> pages;
  for (int i = 0; i < 60; ++i) pages.emplace_back(CUrlNode::New());
  const UrlMapEntry entry(CUrlMapItem::New(nullptr, pages[0].get()));
  std::vector<CBaseNode*> model = {pages[0].get()};
  for (int round = 0; round < 2000; ++round) {
    CUrlNode* const page = pages[random() % pages.size()].get();
    const auto found = std::find(model.begin(), model.end(), page);
    const bool repeats = round / 300 % 2;  // a page may be there twice
    if (random() % 2 && (repeats || found == model.end())) {
      entry->AddUrlNode(page);
      model.push_back(page);
    } else {
      if (found != model.end()) model.erase(found);
      ASSERT_EQ(entry->DeleteUrlNode(page), static_cast<int>(model.size()));
    }
    std::vector<CBaseNode*> held;
    for (auto* cell : chain::Cells(entry->GetUrlListHead())) held.push_back(cell->data);
    ASSERT_EQ(held, model);
    if (round % 500 == 499) entry->ResetHead(entry->GetUrlListHead());
  }
}

}  // namespace vosmere::test::tab_url
