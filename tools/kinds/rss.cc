// A collection with its items in an RSS document.
#include <unordered_set>

#include "tools/kind.h"
#include "tools/kinds/items.h"
#include "tools/loss_on_load.h"
#include "vosmere/collections/rss_reader.h"
#include "vosmere/collections/rss_writer.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {
namespace {

constexpr const char* kTypes[] = {"url", "note", "webpage", "file"};
constexpr const char* kFileTypes[] = {"unknown", "pdf", "doc", "ppt", "txt", "xml", "xls"};

Json TagsOf(const CUrlProp* prop) {
  Json tags = Json::array();
  for (const auto* tag = prop ? prop->GetTagsHead() : nullptr; tag; tag = tag->next)
    tags.push_back(TextOf(tag->data));
  return tags;
}

Record ItemContent(const CUrlNode& item) {
  const CUrlProp* const prop = item.GetUrlProp();
  Record record{"item"};
  record.Add("name", TextOf(item.GetName()));
  record.Add("type", kTypes[item.GetItemType()], item.HasUrl() ? kPlain : kOnLine);
  record.Add("link", AddressOf(item.GetUrl()), kOnLine);
  record.Add("description", TextOf(item.GetDescription()));
  record.Add("author", TextOf(item.GetAuthor()));
  record.Add("relationUrl", TextOf(item.GetRelationUrl()));
  record.Add("fileType", kFileTypes[prop ? prop->GetFileType() : FT_OTHER]);
  record.Add("tags", TagsOf(prop));
  AddSync(record, item, kOnLine);
  AddBuild(record, item);
  AddMarks(record, item);
  AddTimes(record, item);
  if (item.IsDeleted() && item.HasCheckedIn(nullptr))
    record.leftOut = "an item that was checked in and then deleted is left out";
  return record;
}

Record ContentOf(RNode& link);

void AddChildren(Record& record, RNode* link) {
  record.isContainer = true;
  record.children = Records::Of<ContentOf>(link->firstChild);
}

Record ContentOf(RNode& link) {
  if (link.type != NT_FOLDER) return ItemContent(static_cast<const CUrlNode&>(*link.item));
  Record record{"folder"};
  record.Add("name", TextOf(link.item->GetName()));
  record.Add("description", TextOf(link.item->GetDescription()));
  AddSync(record, *link.item);
  AddChildren(record, &link);
  return record;
}

Record CollectionContent(CColctNode* colct) {
  Record record{"collection"};
  record.Add("name", TextOf(colct->GetName()));
  record.Add("description", TextOf(colct->GetDescription()));
  record.Add("owner", TextOf(colct->GetColctNetData()->GetOwner()));
  record.Add("synced", colct->IsNetSynced());
  record.Add("ordered", colct->GetColctNetData()->IsOrdered());
  AddSync(record, *colct);
  AddBuild(record, *colct);
  AddChildren(record, colct->GetLocRNodeRoot());
  return record;
}

void ForEachIn(CColctNode* colct, const ItemVisit& visit) {
  ForEachBelow(colct->GetLocRNodeRoot(), visit);
}

using LoadedCollection = LoadedAs<Collection, CollectionContent, CWriteColctRSS,
                                  &CWriteColctRSS::SetColctNode, ForEachIn>;

constexpr Word kWords[] = {
    {"", "rss", "version"},
    {"rss", "channel"},
    {"channel", "generator", "="},  // each program's own
    {"channel", "dc:creator", "="},
    {"channel", "vsm:action", "sync? ordered?"},
    {"channel vsm:folder", "vsm:folder", "order#", true},
    {"channel", "item", "", true},
    {"channel vsm:folder item", "title", "="},
    {"channel vsm:folder item", "description", "="},
    {"channel vsm:folder item", "sx:sync", "id$ version# deleted?"},
    {"channel item", "vsm:build", "basebuild# checkedin?"},
    {"item", "link", "=<2085"},
    {"item", "xmlUrl", "=<2085"},
    {"item", "author", "=<2085"},
    {"item", "pubDate", "="},
    {"item", "vsm:folderref", "folderid$ order#"},
    {"item", "vsm:rel",
     "type(note|webpage|file) subtype(unknown|pdf|doc|ppt|txt|xml|xls) href<2085"},
    {"item", "vsm:stat", "added# modified# lastVisited# flag# unread?"},
    {"item", "vsm:tags", "="},
    {"*", "vsm:error", "", false,
     "an earlier save dropped an identity that was too long (vsm:error)"},
};

using Identities = std::unordered_set<std::string>;

/// Gathers the folders that items may refer to.
void GatherFolders(const XmlNode& parent, Identities& folders, const Report& report) {
  ForEachChild(parent, "vsm:folder", [&](const XmlNode& folder) {
    const std::string id = AttributeOf(ChildOf(folder, "sx:sync"), "id").value_or("");
    if (!id.empty() && !folders.insert(id).second)
      report("several folders have one identity: items may move between them", folder);
    GatherFolders(folder, folders, report);
  });
}

void InspectChannel(const XmlNode& channel, const Report& report) {
  Identities folders;
  GatherFolders(channel, folders, report);
  ForEachChild(channel, "item", [&](const XmlNode& item) {
    const auto id = AttributeOf(ChildOf(item, "vsm:folderref"), "folderid").value_or("");
    if (!id.empty() && !folders.contains(id))
      report("an item's folder is not in the document", item);
  });
}

void InspectItem(const XmlNode& item, const Report& report) {
  if (ChildOf(item, "pubDate") && !AttributeOf(ChildOf(item, "vsm:stat"), "modified"))
    report("the publication date (pubDate) is not read");
  if (ChildOf(item, "link") && ChildOf(item, "xmlUrl"))
    report("'xmlUrl' is not kept beside 'link'");
  if (!ChildOf(item, "link") && !ChildOf(item, "xmlUrl") &&
      !AttributeOf(ChildOf(item, "vsm:rel"), "type"))
    report("no link in the document: a copy says about:blank");
}

/// What the writer gives an identity that has none.
void InspectIdentity(const XmlNode& element, const Report& report) {
  if (AttributeOf(ChildOf(element, "sx:sync"), "id").value_or("").empty())
    report("no identity in the document: a copy makes one up");
}

void Inspect(const XmlNode& element, std::string_view name, std::string_view,
             const Report& report) {
  if (name == "channel" || name == "vsm:folder" || name == "item") InspectIdentity(element, report);
  if (name == "channel") InspectChannel(element, report);
  if (name == "item") InspectItem(element, report);
}

constexpr Count kCounts[] = {
    {"folder", "folders"}, {"item", "items"}, {"unread", "unread"}, {"flag", "flagged"}};

}  // namespace

const Kind kRss = {
    .root = "rss",
    .what = "collection",
    .counts = kCounts,
    .vocabulary = {.words = kWords, .takesOne = true, .inspect = Inspect},
    .load = LoadedCollection::Load<CReadBkmarkXML, &CReadBkmarkXML::DetachColctNode>};

}  // namespace vosmere::tool
