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
  WChar* const texts[] = {CVSMGlobal::PrefixZ(), CVSMGlobal::Untitled(),
                          CVSMGlobal::AssetsPostfix()};
  EXPECT_EQ(Utf8(texts[0]) + Utf8(texts[1]) + Utf8(texts[2]), "z--Untitled--vsmassets");
  EXPECT_EQ(texts[2], CVSMGlobal::s_szAssPostFix);
}

}  // namespace
}  // namespace vosmere::test
