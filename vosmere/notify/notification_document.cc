// The notification document: its writer, then its reader.
#include "vosmere/notify/notification_document.h"

#include <new>
#include <string_view>
#include <utility>

#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

namespace {

std::string_view TypeName(LONG type) {
  switch (type) {
    case 1000: return "FOLDER_CREATE";
    case 1001: return "FOLDER_MODIFY";
    case 1002: return "FOLDER_DELETE";
    case 1003: return "FOLDER_MOVE";
    case 2000: return "COLCT_CREATE";
    case 2001: return "COLCT_MODIFY";
    case 2002: return "COLCT_DELETE";
    case 2003: return "COLCT_MOVE";
    case 3000: return "ITEM_CREATE";
    case 3001: return "ITEM_MODIFY";
    case 3002: return "ITEM_DELETE";
    case 3003: return "ITEM_MOVE";
    default: return "UNKNOWN";
  }
}

}  // namespace

CWriteVSMNotifyMsg::~CWriteVSMNotifyMsg() = default;

bool CWriteVSMNotifyMsg::FillData() {
  if (!message_) return false;
  BeginDocument();
  AddHead();
  LoseUnread();
  FillNotifyItem();
  FillNotifyItemWithID();
  AddTail();
  return true;
}

void CWriteVSMNotifyMsg::AddHead() {
  Put("<vsmnotify><item>\r\n");
}

void CWriteVSMNotifyMsg::FillNotifyItem() {
  FillNotifyType(message_->GetNotifyType());
  PutElementUnlessNull<"title">(message_->GetName());
  PutElementUnlessNull<"description">(message_->GetDesc());
  PutElementUnlessNull<"link">(message_->GetLink());
  PutElementUnlessNull<"guid">(message_->GetUUID());
}

void CWriteVSMNotifyMsg::FillNotifyType(LONG type) {
  Put("<type>");
  PutBytes(TypeName(type));
  Put("</type>\r\n");
}

void CWriteVSMNotifyMsg::LoseUnread() {
  const CVSMNotifyMsg& message = *message_;
  LosesOf(nullptr, message.GetName());
  LoseIf(message.GetNotifyType() != 0, "type is lost");
  LoseIf(!message.GetParent() && message.GetParentID(), "parentId is lost");
  LoseIf(!message.GetOldParent() && message.GetOldParentID(), "oldParentId is lost");
  LoseIf(!message.GetRefItem() && (message.GetRefItemID() || message.GetRefItemType()),
         "refItemId and refItemType are lost");
}

void CWriteVSMNotifyMsg::FillNotifyItemWithID() {
  if (const WChar* const parent = message_->GetParent()) {
    Put("<parent");
    PutAttributeUnlessNull<"id">(message_->GetParentID());
    Put(">");
    PutEscaped(WideView(parent));
    Put("</parent>");
  }
  if (const WChar* const oldParent = message_->GetOldParent()) {
    Put("<oldparent");
    PutAttributeUnlessNull<"id">(message_->GetOldParentID());
    Put(">");
    PutEscaped(WideView(oldParent));
    Put("</oldparent>");
  }
  if (const WChar* const refItem = message_->GetRefItem()) {
    Put("<refitem");
    PutAttributeUnlessNull<"id">(message_->GetRefItemID());
    PutAttributeUnlessNull<"type">(message_->GetRefItemType());
    Put(">");
    PutEscaped(WideView(refItem));
    Put("</refitem>");
  }
}

void CWriteVSMNotifyMsg::AddTail() {
  Put("</item></vsmnotify>\r\n");
}

// Reading.

namespace {

using namespace xml;

struct Notification {
  OwnedPointer<CVSMNotifyMsg, FreeWith<CVSMNotifyMsg::Delete>> message;
  CVSMNotifyMsg* item = nullptr;  // the message whose element is being read, or null

  void Begin() {
    message.Assign(CVSMNotifyMsg::New());
    if (!message) throw std::bad_alloc();
    item = message.get();
  }
  void End() { item = nullptr; }
};
enum Scope : unsigned { kNotify = 1, kItem = 2 };

constexpr Field<CVSMNotifyMsg> kParentFields[] = {{"id", Text<&CVSMNotifyMsg::SetParentID>}};
constexpr Field<CVSMNotifyMsg> kOldParentFields[] = {{"id", Text<&CVSMNotifyMsg::SetOldParentID>}};
constexpr Field<CVSMNotifyMsg> kRefItemFields[] = {{"id", Text<&CVSMNotifyMsg::SetRefItemID>},
                                                   {"type", Text<&CVSMNotifyMsg::SetRefItemType>}};

template <auto Apply>
constexpr auto TextToItem = TextTo<&Notification::item, Apply, nullptr, Notification>;
template <auto Apply, auto& Fields>
constexpr auto AllToItem = TextAndAttributesTo<&Notification::item, Apply, Fields, Notification>;

void Type(Notification&, const Element& element) {
  NoLoss(element);
  if (element.report() && !IsNamed(element.Text().view(), "UNKNOWN"))
    element.report()->Lose(LossKind::kNotKept, "the type is not read and becomes UNKNOWN");
}

void BeginMessage(Notification& notification, const Element& element) {
  if (element.report() && notification.message)
    element.report()->Lose(LossKind::kRepeated,
                           "'item' is repeated, and only the last of them is kept");
  BeginItem(notification, element);
}

constexpr ScopedElement<Notification> kElements[] = {
    {kAnywhere, "vsmnotify", EndItem, kNotify},
    {kAnywhere, "item", BeginMessage, kItem, EndItem},
    {kItem, "parent", AllToItem<&CVSMNotifyMsg::SetParent, kParentFields>},
    {kItem, "oldparent", AllToItem<&CVSMNotifyMsg::SetOldParent, kOldParentFields>},
    {kItem, "refitem", AllToItem<&CVSMNotifyMsg::SetRefItem, kRefItemFields>},
    {kItem, "title", TextToItem<&CVSMNotifyMsg::SetName>},
    {kItem, "description", TextToItem<&CVSMNotifyMsg::SetDesc>},
    {kItem, "guid", TextToItem<&CVSMNotifyMsg::SetUUID>},
    {kItem, "type", Type},
    {kItem, "link", TextToItem<&CVSMNotifyMsg::SetLink>},
};

}  // namespace

CReadVSMNotify::~CReadVSMNotify() = default;

void CReadVSMNotify::InvokeParser(XmlNode root) {
  Notification notification;
  if (IsRootNamed(root, "vsmnotify"))
    ReadChildren(kElements, notification, Reported(root), kNotify);
  // Checked before the result of an earlier load is replaced.
  ThrowIfTextsWereLost();
  message_ = std::move(notification.message);
}

}  // namespace vosmere
