#include "vosmere/ftp/ftp_site.h"

#include <gtest/gtest.h>

#include "tests/support/failing_memory.h"
#include "tests/support/row.h"
#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

TEST(FtpSite, AddressesStandInOrderAndAreAddedWholeOrNotAtAll) {
  ExpectNullAtEachFailure(CFtpConBase::New, CFtpConBase::Delete);
  CFtpWebAddress addresses;
  const Wide name = W("b"), link = W("c");
  EXPECT_TRUE(addresses.Add(W("a"), W("")) && addresses.Add(name, link));
  EXPECT_TRUE(addresses.Add(nullptr, nullptr));
  for (int successes = 0; successes < (kSystemStringsFail ? 3 : 1); ++successes) {
    const FailingMemory memory(successes);
    EXPECT_FALSE(addresses.Add(name, link));
  }
  const auto show = [](const CFtpWebAddress::Cell* cell) {
    return Utf8(cell->GetName()) + "=" + Utf8(cell->GetLink());
  };
  EXPECT_EQ(Row(addresses.GetHead(), show), "a= b=c (null)=(null)");
}

}  // namespace
}  // namespace vosmere::test
