// Records that documents carry; that each field has a place of its own shows in their round trips.
#include "vosmere/notify/notify_msg.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/failing_memory.h"
#include "tests/support/row.h"
#include "tests/support/wide.h"
#include "vosmere/net/ftp_site.h"
#include "vosmere/notify/vsm_global.h"

namespace vosmere::test {
namespace {

TEST(NotifyMsg, ATextIsNullUntilItIsSetAndTheLastOneCounts) {
  using Message = CVSMNotifyMsg;
  ExpectNullAtEachFailure(Message::New, Message::Delete);
  const std::unique_ptr<Message, void (*)(Message*)> message(Message::New(), Message::Delete);
  EXPECT_EQ(message->GetNotifyType(), 0);
  EXPECT_EQ(message->GetOldParentID(), nullptr);
  message->SetOldParentID(W("first"));
  message->SetOldParentID(W("second"));
  EXPECT_EQ(Utf8(message->GetOldParentID()), "second");
  EXPECT_EQ(message->GetParentID(), nullptr);
  message->SetOldParentID(nullptr);
  EXPECT_EQ(message->GetOldParentID(), nullptr);
}

TEST(VsmGlobal, HandsOutItsTexts) {
  EXPECT_EQ(Utf8(CVSMGlobal::PrefixZ()), "z--");
  EXPECT_EQ(Utf8(CVSMGlobal::Untitled()), "Untitled-");
  EXPECT_EQ(Utf8(CVSMGlobal::AssetsPostfix()), "-vsmassets");
}

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
