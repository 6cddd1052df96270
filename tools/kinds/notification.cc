// A change of a folder, collection or item.
#include "vosmere/notify/notification_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::tool {
namespace {

Record MessageContent(CVSMNotifyMsg* message) {
  Record record{"notification"};
  record.Add("name", TextOf(message->GetName()));
  record.Add("link", TextOf(message->GetLink()), kOnLine);
  record.Add("description", TextOf(message->GetDesc()), kOwnLine);
  record.Add("id", TextOf(message->GetUUID()));
  record.Add("parent", TextOf(message->GetParent()), kOwnLine);
  record.Add("parentId", TextOf(message->GetParentID()));
  record.Add("oldParent", TextOf(message->GetOldParent()), kOwnLine);
  record.Add("oldParentId", TextOf(message->GetOldParentID()));
  record.Add("refItem", TextOf(message->GetRefItem()), kOwnLine);
  record.Add("refItemId", TextOf(message->GetRefItemID()));
  record.Add("refItemType", TextOf(message->GetRefItemType()));
  return record;
}

using Message = std::unique_ptr<CVSMNotifyMsg, FreeWith<CVSMNotifyMsg::Delete>>;
using LoadedMessage =
    LoadedAs<Message, MessageContent, CWriteVSMNotifyMsg, &CWriteVSMNotifyMsg::SetVSMNotifyMsg>;

constexpr Word kWords[] = {
    {"", "vsmnotify"},
    {"*", "item"},
    {"item", "type", "="},
    {"item", "title", "="},
    {"item", "description", "="},
    {"item", "link", "="},
    {"item", "guid", "="},
    {"item", "parent", "= id"},
    {"item", "oldparent", "= id"},
    {"item", "refitem", "= id type"},
};

void Inspect(const XmlNode& element, std::string_view name, std::string_view scope,
             const Report& report) {
  InspectNesting(name, scope, report);
  if (name == "type" && !xml::IsNamed(element.Text().view(), "UNKNOWN"))
    report("the type is not read and comes back as UNKNOWN");
}

}  // namespace

const Kind kNotification = {
    "vsmnotify",
    "notification",
    {},
    {.words = kWords, .takesOne = true, .inspect = Inspect},
    LoadedMessage::Load<CReadVSMNotify, &CReadVSMNotify::DetachVSMNotifyMsg>};

}  // namespace vosmere::tool
