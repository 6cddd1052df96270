// Makes records of the contents of each kind of document.
#include "tools/contents.h"

#include <algorithm>

#include "vosmere/base/list.h"

namespace vosmere::tool {
namespace {

/// Null for a null or empty text: items have empty texts where the document has none.
Json TextOf(const WChar* text) {
  return text && *text ? Json(ToUtf8(text)) : Json();
}

/// Null also for "about:blank", the address of items without one.
Json AddressOf(const WChar* url) {
  Json address = TextOf(url);
  return address == "about:blank" ? Json() : address;
}

/// Adds identity, version and whether the item is deleted. Documents store the version only
/// together with an identity; without one, the default version 1 is not shown.
void AddSync(Record& record, const CBaseNode& item, unsigned ofDeleted = kPlain) {
  const int version = item.GetVersion();
  record.Add("id", TextOf(item.GetUUID()));
  record.Add("version", *item.GetUUID() || version != 1 ? Json(version) : Json());
  record.Add("deleted", item.IsDeleted(), ofDeleted);
}

void AddBuild(Record& record, const CBaseNode& item) {
  record.Add("baseBuild", item.GetBaseBuild());
  record.Add("checkedIn", item.HasCheckedIn(nullptr));
}

void AddMarks(Record& record, const CBaseNode& item) {
  record.Add("unread", item.GetNodeStat()->IsUnread(), kOnLine);
  record.Add("flag", item.GetNodeStat()->GetFlag(), kOnLine);
}

/// Adds the times; null for those that the document does not state, which come from the clock.
void AddTimes(Record& record, const CBaseNode& item) {
  const CNodeStat& stat = *item.GetNodeStat();
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  const auto said = [&](LONG time, ULONG which) {
    return stat.GetSetTimes() & which ? Json(time) : Json();
  };
  record.Add("added", said(added, CNodeStat::kAdded), kTime);
  record.Add("modified", said(modified, CNodeStat::kModified), kTime);
  record.Add("lastVisited", said(lastVisited, CNodeStat::kLastVisited), kTime);
}

/// Adds a record for every cell of a chain. `contentOf` makes it from the content of the cell.
template <auto contentOf, class Cell>
void AddChildren(Record& record, Cell* head) {
  constexpr auto recordOf = [](Cell& cell) { return contentOf(*list::Datum(cell)); };
  record.isContainer = true;
  record.children = Records::Of<recordOf>(head);
}

template <auto contentOf, class Cell>
Record ListContent(std::string_view kind, Cell* head) {
  Record record{kind};
  AddChildren<contentOf>(record, head);
  return record;
}

// Which items belong to which collections.

Record NameContent(const CColctItemID& id) {
  Record item{"item"};
  item.Add("name", TextOf(id.GetName()));
  item.Add("colctId", TextOf(id.GetColctID()), kOnLine);
  item.Add("id", TextOf(id.GetItemID()), kOnLine);
  return item;
}

Record ContentOf(const ColctItemNameList& list) {
  return ListContent<NameContent>("items", list.get());
}

// A list of collections.

Record ListedContent(CColctNode& colct) {
  Record record{"collection"};
  record.Add("name", TextOf(colct.GetName()));
  record.Add("link", AddressOf(colct.GetUrl()), kOnLine);
  record.Add("description", TextOf(colct.GetDescription()));
  record.Add("owner", TextOf(colct.GetColctNetData()->GetOwner()));
  record.Add("id", TextOf(colct.GetUUID()));
  AddBuild(record, colct);
  AddTimes(record, colct);
  return record;
}

Record ContentOf(const ColctList& list) {
  return ListContent<ListedContent>("collections", list.get());
}

// The profile of the collections.

Record ExtraContent(const CColctExData& data) {
  Record record{"collection"};
  record.Add("url", TextOf(data.GetColctUrl()));
  record.Add("item", TextOf(data.GetItemID()), kOnLine);
  return record;
}

Record ContentOf(const ColctProfile& profile) {
  Record record{"profile"};
  record.Add("default", TextOf(profile.defaultAddress.get()));
  AddChildren<ExtraContent>(record, profile.entries.get());
  return record;
}

// FTP sites to publish to.

Record AddressContent(const CFtpWebAddress::Cell& address) {
  Record record{"address"};
  record.Add("name", TextOf(address.GetName()));
  record.Add("link", TextOf(address.GetLink()), kOnLine);
  return record;
}

Record SiteContent(CFtpConBase& site) {
  Record record{"site"};
  record.Add("name", TextOf(site.GetTitle()));
  record.Add("host", TextOf(site.GetHost()), kOnLine);
  record.Add("userName", TextOf(site.GetUserName()));
  record.Add("path", TextOf(site.GetInitPath()));
  record.Add("passive", site.IsPASVMode());
  record.Add("port", site.GetPort());
  record.Add("savePassword", site.IsSavePSW());
  record.Add("current", site.IsCurrent(), kOnLine);
  record.Add("id", TextOf(site.GetUUID()));
  record.Add("stampId", TextOf(site.GetStampID()));
  record.isContainer = true;
  record.children = Records::Of<AddressContent>(site.GetFtpWebAddress()->GetHead());
  return record;
}

Record ContentOf(const FtpSiteList& sites) {
  return ListContent<SiteContent>("sites", sites.get());
}

// A notification about a change of a folder, collection or item.

Record ContentOf(const Notification& message) {
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

// A tree of folders and collections.

/// The address as documents contain it, with slashes.
Json WrittenAddressOf(const CColctNode& colct) {
  Json address = AddressOf(colct.GetUrl());
  if (address.is_null()) return address;
  auto& text = address.get_ref<std::string&>();
  std::replace(text.begin(), text.end(), '\\', '/');
  return address;
}

/// A page of a store's tree; documents of trees have none.
Record StoredPageContent(CUrlNode& page) {
  Record record{"page"};
  record.Add("name", TextOf(page.GetName()));
  record.Add("description", TextOf(page.GetDescription()));
  record.Add("link", AddressOf(page.GetUrl()), kOnLine);
  AddSync(record, page);
  AddMarks(record, page);
  AddTimes(record, page);
  record.marked = &page;
  return record;
}

Record OutlineContent(RNode& link) {
  if (link.type == NT_URL) return StoredPageContent(static_cast<CUrlNode&>(*link.item));
  const bool isFolder = link.type == NT_FOLDER;
  CBaseNode& item = *link.item;
  Record record{isFolder ? "folder" : "collection"};
  record.Add("name", TextOf(item.GetName()));
  record.Add("description", TextOf(item.GetDescription()));
  if (!isFolder) {
    const auto& colct = static_cast<const CColctNode&>(item);
    record.Add("xmlUrl", WrittenAddressOf(colct), kOnLine);
    record.Add("htmlUrl", TextOf(colct.GetRelationUrl()));
  }
  AddSync(record, item);
  AddMarks(record, item);
  if (!isFolder) {
    AddTimes(record, item);  // documents do not store those of folders
    const auto& colct = static_cast<const CColctNode&>(item);
    record.Add("expanded", colct.GetColctNetData()->GetColctExpandState());
    record.marked = &item;
  }
  record.isContainer = isFolder;
  record.children = Records::Of<OutlineContent>(link.firstChild);
  return record;
}

Record ContentOf(const Tree& tree) {
  return OutlineContent(*tree);
}

// The data of a published page.

/// Null only for null: in page data an empty text differs from a missing one.
Json ExactTextOf(const WChar* text) {
  return text ? Json(ToUtf8(text)) : Json();
}

Record ContentOf(const PageData& page) {
  Record record{"page"};
  record.Add("pageTitle", ExactTextOf(page->GetPageTitle()));
  record.Add("brand", ExactTextOf(page->GetBrand()), kOwnLine);
  record.Add("brandLink", ExactTextOf(page->GetBrandLink()), kOwnLine);
  record.Add("description", ExactTextOf(page->GetDescription()), kOwnLine);
  record.Add("indexTitle", ExactTextOf(page->GetIndexTitle()), kOwnLine);
  record.Add("contentTitle", ExactTextOf(page->GetContentTitle()), kOwnLine);
  record.Add("rootNodeTitle", ExactTextOf(page->GetRootNodeTitle()), kOwnLine);
  record.Add("templateName", ExactTextOf(page->GetTemplateName()), kOwnLine);
  return record;
}

// A collection with its items.

constexpr const char* kTypes[] = {"url", "note", "webpage", "file"};
constexpr const char* kFileTypes[] = {"unknown", "pdf", "doc", "ppt", "txt", "xml", "xls"};

Json TagsOf(const CUrlProp* prop) {
  Json tags = Json::array();
  for (const auto* tag = prop ? prop->GetTagsHead() : nullptr; tag; tag = tag->next)
    tags.push_back(TextOf(tag->data));
  return tags;
}

Record ItemContent(CUrlNode& item) {
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
  record.marked = &item;
  return record;
}

Record LinkContent(RNode& link);

void AddChildren(Record& record, RNode* link) {
  record.isContainer = true;
  record.children = Records::Of<LinkContent>(link->firstChild);
}

Record LinkContent(RNode& link) {
  if (link.type != NT_FOLDER) return ItemContent(static_cast<CUrlNode&>(*link.item));
  Record record{"folder"};
  record.Add("name", TextOf(link.item->GetName()));
  record.Add("description", TextOf(link.item->GetDescription()));
  AddSync(record, *link.item);
  AddChildren(record, &link);
  return record;
}

Record ContentOf(const Collection& colct) {
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

// Search engines.

Record EngineContent(const CEngineNode& engine) {
  Record record{"engine"};
  record.Add("name", TextOf(engine.GetName()));
  record.Add("queryUrl", AddressOf(engine.GetUrl()), kOnLine);
  record.Add("type", TextOf(engine.GetSearchType()), kOnLine);
  record.Add("description", TextOf(engine.GetDescription()));
  record.Add("icon", TextOf(engine.GetIconUrl()));
  return record;
}

Record ContentOf(const EnginePool& pool) {
  Record record{"pool"};
  record.Add("name", TextOf(pool->GetName()));
  record.Add("description", TextOf(pool->GetDescription()));
  AddChildren<EngineContent>(record, pool->GetREngineItemHead());
  return record;
}

// Tags in groups.

Record TagContent(const CTagItem& tag) {
  Record record{"tag"};
  record.Add("name", TextOf(tag.GetName()));
  record.Add("count", tag.GetCount(), kOnLine);
  return record;
}

Record GroupContent(const CTagGroup& group) {
  Record record{"group"};
  record.Add("name", TextOf(group.GetName()));
  AddChildren<TagContent>(record, group.GetTagItemHead());
  return record;
}

Record ContentOf(const TagGroupList& groups) {
  return ListContent<GroupContent>("tags", groups.get());
}

// The layout of the toolbar bands.

Record BandContent(const TBARBANDINFO& band) {
  Record record{"toolbar"};
  record.Add("name", TextOf(band.title));
  record.Add("clsid", TextOf(band.clsid), kOnLine);
  record.Add("enabled", band.enabled, kOnLine);
  record.Add("visible", band.visible);
  record.Add("hasPlace", band.hasContainerData);
  record.Add("index", band.index);
  record.Add("style", band.style);
  record.Add("width", band.width);
  return record;
}

Record ContentOf(const ToolbarBands& bands) {
  Record record{"toolbars"};
  AddChildren<BandContent>(record, bands->GetRBandInfoItemHead());
  return record;
}

constexpr Count kItems[] = {{"item", "item*"}};
constexpr Count kColcts[] = {{"collection", "collection*"}};
constexpr Count kSites[] = {{"site", "site*"}};
constexpr Count kOutlines[] = {{"folder", "folder*"},
                               {"collection", "collection*"},
                               {"unread", "unread"},
                               {"flag", "flagged"}};
constexpr Count kLinks[] = {
    {"folder", "folder*"}, {"item", "item*"}, {"unread", "unread"}, {"flag", "flagged"}};
constexpr Count kEngines[] = {{"engine", "engine*"}};
constexpr Count kTags[] = {{"group", "group*"}, {"tag", "tag*"}};
constexpr Count kBands[] = {{"toolbar", "toolbar*"}, {"enabled", "enabled"}};

// In the order of the types in AnyDocument, whose index is used.
const Kind kKinds[] = {{"tree", kOutlines},
                       {"collection", kLinks},
                       {"collection list", kColcts},
                       {"items of collections", kItems},
                       {"collection profile", kColcts},
                       {"FTP sites", kSites},
                       {"notification", {}},
                       {"page data", {}},
                       {"search engines", kEngines},
                       {"tags", kTags},
                       {"toolbars", kBands}};

void Visit(RNode* top, const ItemVisit& visit) {
  for (CBaseNode& item : Items(top)) visit(item);
}
template <class Items>
void VisitEach(const Items& items, const ItemVisit& visit) {
  for (CBaseNode& item : items) visit(item);
}

}  // namespace

const Kind& KindOf(const AnyDocument& document) {
  return kKinds[document.index()];
}

Record ContentOf(const AnyDocument& document) {
  return std::visit([](const auto& value) { return ContentOf(value); }, document);
}

void ForEachItem(const AnyDocument& document, const ItemVisit& visit) {
  if (const auto* tree = std::get_if<Tree>(&document)) Visit(tree->get(), visit);
  if (const auto* colct = std::get_if<Collection>(&document))
    Visit((*colct)->GetLocRNodeRoot(), visit);
  if (const auto* list = std::get_if<ColctList>(&document)) VisitEach(Each(*list), visit);
  if (const auto* pool = std::get_if<EnginePool>(&document)) VisitEach(Engines(**pool), visit);
}

}  // namespace vosmere::tool
