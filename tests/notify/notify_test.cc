#include "tests/support/document.h"
#include "tests/support/stored_documents.h"
#include "tests/support/test.h"

namespace vosmere::test::notify {

/// The content of the item, between its start tag and its end tag.
std::string Body(const Notification& message) {
  CWriteVSMNotifyMsg writer;
  writer.SetVSMNotifyMsg(message.get());
  const std::string saved = Saved(writer), from = "<vsmnotify><item>\r\n";
  const std::size_t begin = saved.find(from) + from.size();
  return saved.substr(begin, saved.find("</item></vsmnotify>\r\n") - begin);
}

TEST(Notification, TypesAreWrittenByName) {
  const struct {
    LONG type;
    const char* name;
  } cases[] = {
      {1000, "FOLDER_CREATE"}, {1001, "FOLDER_MODIFY"}, {1002, "FOLDER_DELETE"},
      {1003, "FOLDER_MOVE"},   {2000, "COLCT_CREATE"},  {2001, "COLCT_MODIFY"},
      {2002, "COLCT_DELETE"},  {2003, "COLCT_MOVE"},    {3000, "ITEM_CREATE"},
      {3001, "ITEM_MODIFY"},   {3002, "ITEM_DELETE"},   {3003, "ITEM_MOVE"},
      {5, "UNKNOWN"},          {0, "UNKNOWN"},          {1004, "UNKNOWN"},
  };
  for (const auto& c : cases) {
    const Notification message(CVSMNotifyMsg::New());
    EXPECT_EQ(message->GetNotifyType(), 0);
    message->SetNotifyType(c.type);
    EXPECT_EQ(Body(message), std::string("<type>") + c.name + "</type>\r\n");
  }
}

TEST(Notification, WhatIsNullIsNotWrittenWhatIsEmptyIs) {
  ExpectNullAtEachFailure(CVSMNotifyMsg::New, CVSMNotifyMsg::Delete);
  const Notification message(CVSMNotifyMsg::New());
  message->SetDesc(W(""));
  message->SetParentID(W("no parent"));
  message->SetOldParent(W(""));
  message->SetOldParentID(W(""));
  message->SetRefItem(W("r"));
  message->SetRefItemType(W("t"));
  EXPECT_EQ(Body(message),
            "<type>UNKNOWN</type>\r\n<description></description>\r\n"
            "<oldparent id=\"\"></oldparent><refitem type=\"t\">r</refitem>");
  message->SetRefItemType(nullptr);
  message->SetRefItemID(W("i"));
  EXPECT_THAT(Body(message), HasSubstr("<refitem id=\"i\">r</refitem>"));
}

}  // namespace vosmere::test::notify
