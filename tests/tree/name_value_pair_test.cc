#include "vosmere/tree/name_value_pair.h"

#include "tests/support/test.h"
#include "vosmere/base/chain.h"

namespace vosmere::test::name_value_pair {

TEST(NameValuePair, FindsTheFirstNameInAnyLetterCase) {
  const Wide rows[][2] = {{nullptr, W("nameless")},
                          {W("Charset"), W("utf-8")},
                          {W("charset"), W("second")},
                          {W("empty"), nullptr}};
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
}

}  // namespace vosmere::test::name_value_pair
