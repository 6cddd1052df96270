#include "vosmere/notify/notify_msg.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/failing_memory.h"
#include "tests/support/wide.h"
#include "vosmere/base/shared_texts.h"

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

}  // namespace
}  // namespace vosmere::test
