#include "vosmere/notify/notification_document.h"

#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/stored_documents.h"

namespace vosmere::test {
namespace {

using Message = std::unique_ptr<CVSMNotifyMsg, decltype(&CVSMNotifyMsg::Delete)>;

Message NewMessage() {
  return {CVSMNotifyMsg::New(), CVSMNotifyMsg::Delete};
}

std::string Saved(const Message& message) {
  CWriteVSMNotifyMsg writer;
  writer.SetVSMNotifyMsg(message.get());
  return test::Saved(writer);
}

/// What stands between the start of the item and its end.
std::string Body(const Message& message) {
  const std::string saved = Saved(message), from = "<vsmnotify><item>\r\n";
  const std::size_t begin = saved.find(from) + from.size();
  return saved.substr(begin, saved.find("</item></vsmnotify>\r\n") - begin);
}

Message Read(const std::string& content) {
  CReadVSMNotify reader;
  EXPECT_TRUE(Load(reader, "<vsmnotify>" + content + "</vsmnotify>"));
  return {reader.DetachVSMNotifyMsg(), CVSMNotifyMsg::Delete};
}

TEST(Notification, IsWrittenByteForByte) {
  const Message message = NewMessage();
  message->SetNotifyType(2003);
  message->SetName(W("Déjà <vu>"));
  message->SetDesc(W("a & b"));
  message->SetLink(W("http://a.example/?a=1&b=2"));
  message->SetUUID(W("00000000-0000-4000-8000-000000000001"));
  message->SetParent(W("News"));
  message->SetParentID(W("p\"1\""));
  message->SetOldParent(W("Old 'news'"));
  message->SetRefItem(W("Note"));
  message->SetRefItemID(W("r1"));
  message->SetRefItemType(W("note"));
  EXPECT_EQ(Saved(message), TestData("notification.xml"));
}

TEST(Notification, TypesAreNotReadBack) {
  std::string expected = TestData("notification.xml");
  expected.replace(expected.find("COLCT_MOVE"), 10, "UNKNOWN");
  EXPECT_EQ(Rewritten("notification.xml", TestData("notification.xml")), expected);
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
    const Message message = NewMessage();
    message->SetNotifyType(c.type);
    EXPECT_EQ(Body(message), std::string("<type>") + c.name + "</type>\r\n");
  }
}

TEST(Notification, WhatIsNullIsNotWrittenWhatIsEmptyIs) {
  const Message message = NewMessage();
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
  EXPECT_NE(Body(message).find("<refitem id=\"i\">r</refitem>"), std::string::npos);
  EXPECT_EQ(Saved(Message(nullptr, CVSMNotifyMsg::Delete)), "(not saved)");
}

TEST(Notification, OnlyReferencesHaveATypeOfTheirOwn) {
  const Message message = Read(
      "<item><parent id='p' type='x'>P</parent><oldparent type='y'/><refitem type='t'>R</refitem>"
      "<type>COLCT_MOVE</type></item>");
  ASSERT_TRUE(message);
  EXPECT_EQ(Utf8(message->GetParent()) + Utf8(message->GetParentID()), "Pp");
  EXPECT_EQ(Utf8(message->GetOldParent()) + Utf8(message->GetOldParentID()), "(null)");
  EXPECT_EQ(Utf8(message->GetRefItem()) + Utf8(message->GetRefItemType()), "Rt");
  EXPECT_EQ(Utf8(message->GetRefItemID()), "(null)");
  EXPECT_EQ(message->GetNotifyType(), 0);
}

TEST(Notification, TheLastItemIsTheMessage) {
  const struct {
    const char *content, *name;
  } cases[] = {
      {"<item><title>a</title><guid>g</guid></item><item><title>b</title></item>", "b(null)"},
      {"<x><item><title>a</title></item></x><title>b</title>", "a(null)"},
      {"<item><title>a</title><item/><title>b</title><guid>g</guid></item>", "(null)(null)"},
      {"<item><title>a<item><guid>g</guid></item></title><title>b</title></item>", "(null)g"},
      {"<item><title>a</title><vsmnotify/><guid>g</guid></item>", "a(null)"},
  };
  for (const auto& c : cases) {
    const Message message = Read(c.content);
    ASSERT_TRUE(message);
    EXPECT_EQ(Utf8(message->GetName()) + Utf8(message->GetUUID()), c.name) << c.content;
  }
}

TEST(Notification, AnotherDocumentReplacesTheMessageAlsoWithNone) {
  CReadVSMNotify reader;
  ASSERT_TRUE(Load(reader, TestData("notification.xml")));
  EXPECT_FALSE(Load(reader, "<vsmnotify><item>"));
  ASSERT_TRUE(Load(reader, TestData("notification.xml")));
  EXPECT_TRUE(Load(reader, "<vsmnotify> </vsmnotify>"));
  EXPECT_EQ(reader.DetachVSMNotifyMsg(), nullptr);
}

}  // namespace
}  // namespace vosmere::test
