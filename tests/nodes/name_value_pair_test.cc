#include "vosmere/nodes/name_value_pair.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/wide.h"
#include "vosmere/base/chain.h"

namespace vosmere::test {
namespace {

struct PairList {
  ~PairList() { CNameValuePair::DeleteList(head); }
  void Add(const Wide& name, const Wide& value) {
    CNameValuePair* const pair = CNameValuePair::New();
    pair->SetName(name);
    pair->SetValue(value);
    chain::Append(head, pair);
  }
  std::string Find(const Wide& name) const { return Utf8(CNameValuePair::FindValue(head, name)); }

  CNameValuePair* head = nullptr;
};

TEST(NameValuePair, FindsTheFirstNameInAnyLetterCase) {
  PairList list;
  list.Add(nullptr, W("nameless"));
  list.Add(W("Charset"), W("utf-8"));
  list.Add(W("charset"), W("second"));
  list.Add(W("empty"), nullptr);
  EXPECT_EQ(list.Find(W("charset")), "utf-8");
  EXPECT_EQ(list.Find(W("CHARSET")), "utf-8");
  EXPECT_EQ(list.Find(W("charse")), "(null)");
  EXPECT_EQ(list.Find(W("")), "(null)");
  EXPECT_EQ(list.Find(W("empty")), "(null)");
  EXPECT_EQ(list.Find(nullptr), "(null)");
  EXPECT_EQ(PairList().Find(W("charset")), "(null)");
}

TEST(NameValuePair, IsAPairWithBothTexts) {
  CNameValuePair* const pair = CNameValuePair::New();
  EXPECT_EQ(pair->prev, pair);
  EXPECT_EQ(pair->next, nullptr);
  EXPECT_FALSE(pair->IsPair());
  pair->SetName(W(""));
  EXPECT_FALSE(pair->IsPair());
  pair->SetValue(W(""));
  EXPECT_TRUE(pair->IsPair());
  pair->SetName(nullptr);
  EXPECT_FALSE(pair->IsPair());
  CNameValuePair::Delete(pair);
  CNameValuePair::Delete(nullptr);
}

}  // namespace
}  // namespace vosmere::test
