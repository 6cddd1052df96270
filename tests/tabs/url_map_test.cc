#include "vosmere/tabs/url_map.h"

#include <gtest/gtest.h>

#include "tests/support/tree.h"

namespace vosmere::test {
namespace {

TEST(UrlMap, GroupsPagesAndChangesTheirAddressAlsoToOneOfTheirOwn) {
  const auto a = New<CUrlNode>(), b = New<CUrlNode>(), stranger = New<CUrlNode>();
  CUrlMapItem* const entry = CUrlMapItem::New(Repeated(2085), a.get());
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
  CUrlMapItem::Delete(entry);
}

}  // namespace
}  // namespace vosmere::test
