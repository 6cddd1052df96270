#include "vosmere/nodes/url_map.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/failing_memory.h"
#include "tests/support/tree.h"

namespace vosmere::test {
namespace {

struct EntryDelete {
  void operator()(CUrlMapItem* entry) const { CUrlMapItem::Delete(entry); }
};
using EntryPtr = std::unique_ptr<CUrlMapItem, EntryDelete>;

TEST(UrlMap, GroupsPagesAndChangesTheirAddress) {
  const auto a = New<CUrlNode>(), b = New<CUrlNode>(), stranger = New<CUrlNode>();
  const EntryPtr entry(CUrlMapItem::New(W("old"), a.get()));
  EXPECT_FALSE(entry->HasDuplication());
  EXPECT_TRUE(entry->AddUrlNode(b.get()));
  EXPECT_TRUE(entry->HasDuplication());
  entry->ModifyURL(W("new"));
  for (const Wide& ignored : {Wide(nullptr), Repeated(2085)}) entry->ModifyURL(ignored);
  for (const WChar* url : {a->GetUrl(), b->GetUrl(), entry->GetUrl()}) EXPECT_EQ(Utf8(url), "new");

  EXPECT_EQ(entry->DeleteUrlNode(stranger.get()), 2);
  EXPECT_EQ(entry->DeleteUrlNode(a.get()), 1);
  EXPECT_EQ(entry->GetUrlListHead()->data, b.get());
  EXPECT_EQ(entry->DeleteUrlNode(b.get()), 0);
  EXPECT_EQ(entry->GetUrlListHead(), nullptr);
  EXPECT_FALSE(entry->HasDuplication());
}

TEST(UrlMap, TheNewAddressMayBeOneOfItsOwn) {
  const auto a = New<CUrlNode>(), b = New<CUrlNode>();
  const EntryPtr entry(CUrlMapItem::New(Repeated(2085), a.get()));
  EXPECT_EQ(entry->GetUrl(), nullptr);
  entry->AddUrlNode(b.get());
  entry->ModifyURL(a->GetUrl());
  entry->ModifyURL(entry->GetUrl());
  EXPECT_EQ(Utf8(entry->GetUrl()), "about:blank");
  EXPECT_EQ(Utf8(b->GetUrl()), "about:blank");
}

TEST(UrlMap, WithoutMemoryThereIsNoEntry) {
  const auto page = New<CUrlNode>();
  const Wide url = W("url");
  AtEachFailure([&] { return CUrlMapItem::New(url, page.get()); },
                [](CUrlMapItem* entry, bool failed) {
                  EXPECT_EQ(entry == nullptr, failed);
                  CUrlMapItem::Delete(entry);
                });
}

}  // namespace
}  // namespace vosmere::test
