#include "tools/opml_fields.h"

#include <algorithm>

#include "tools/text.h"

namespace vosmere::tool {
namespace {

using Value = Json (*)(CBaseNode& item);

Json Text(const WChar* text) {
  return text ? Json(ToUtf8(text)) : Json();
}
CColctNode& Colct(CBaseNode& item) {
  return static_cast<CColctNode&>(item);
}

template <ULONG Which>
Json Time(CBaseNode& item) {
  LONG added = 0, modified = 0, lastVisited = 0;
  item.GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  return Which == CNodeStat::kAdded      ? added
         : Which == CNodeStat::kModified ? modified
                                         : lastVisited;
}

Json Address(CBaseNode& item) {
  std::string address = ToUtf8(Colct(item).GetUrl());
  std::replace(address.begin(), address.end(), '\\', '/');
  return address;
}

struct Field {
  const char* name;
  bool ofFolders;
  Value value;
};

constexpr Field kFields[] = {
    {"name", true, [](CBaseNode& item) { return Text(item.GetName()); }},
    {"description", true, [](CBaseNode& item) { return Text(item.GetDescription()); }},
    {"xmlUrl", false, Address},
    {"htmlUrl", false, [](CBaseNode& item) { return Text(Colct(item).GetRelationUrl()); }},
    {"id", true, [](CBaseNode& item) { return Text(item.GetUUID()); }},
    {"version", true, [](CBaseNode& item) { return Json(item.GetVersion()); }},
    {"deleted", true, [](CBaseNode& item) { return Json(item.IsDeleted()); }},
    {"unread", true, [](CBaseNode& item) { return Json(item.GetNodeStat()->IsUnread()); }},
    {"flag", true, [](CBaseNode& item) { return Json(item.GetNodeStat()->GetFlag()); }},
    // A folder's times are not in the document: they would say when it was loaded.
    {"added", false, Time<CNodeStat::kAdded>},
    {"modified", false, Time<CNodeStat::kModified>},
    {"lastVisited", false, Time<CNodeStat::kLastVisited>},
    {"expanded", false,
     [](CBaseNode& item) { return Json(Colct(item).GetColctNetData()->GetColctExpandState()); }},
};

bool IsNothing(const Json& value) {
  return value.is_null() || (value.is_string() && value.get_ref<const std::string&>().empty());
}

std::string Change(const std::string& field, const Json& saved, const Json& back) {
  if (IsNothing(saved)) return "an empty " + field + " comes back as " + back.dump();
  if (IsNothing(back) || !saved.is_string()) return field + " does not come back";
  const auto& rest = back.get_ref<const std::string&>();
  if (saved.get_ref<const std::string&>().starts_with(rest))
    return field + " is cut to " + std::to_string(WideLength(ToWide(rest).get())) + " characters";
  return field + " comes back changed";
}

void CompareItems(const RNode* saved, const RNode* back, const RNode* named, Findings& findings) {
  for (const Field& field : kFields) {
    if (!field.ofFolders && saved->type == NT_FOLDER) continue;
    const Json before = field.value(*saved->item);
    const Json after = field.value(*back->item);
    if (before != after && !(IsNothing(before) && IsNothing(after)))
      findings.Add(Change(field.name, before, after), PlaceOf(named));
  }
}

/// Goes over a tree in document order, so that trees can be walked side by side.
struct PreOrder {
  explicit PreOrder(RNode* root) : link(root) {}

  void Step() {
    if (link->firstChild) {
      link = link->firstChild;
      ++level;
      return;
    }
    while (level > 0 && !link->next) {
      link = link->parent;
      --level;
    }
    link = level > 0 ? link->next : nullptr;
  }

  RNode* link;
  int level = 0;
};

}  // namespace

Json ItemFields(const RNode* link) {
  const bool isFolder = link->type == NT_FOLDER;
  Json fields;
  fields["kind"] = isFolder ? "folder" : "collection";
  for (const Field& field : kFields)
    if (field.ofFolders || !isFolder) fields[field.name] = field.value(*link->item);
  return fields;
}

bool SameShape(RNode* a, RNode* b) {
  PreOrder x(a), y(b);
  for (; x.link && y.link; x.Step(), y.Step())
    if (x.level != y.level || x.link->type != y.link->type) return false;
  return !x.link && !y.link;
}

void CompareTrees(RNode* saved, RNode* back, RNode* named, Findings& findings) {
  for (PreOrder x(saved), y(back), z(named); x.link && y.link && z.link;
       x.Step(), y.Step(), z.Step())
    CompareItems(x.link, y.link, z.link, findings);
}

std::string PlaceOf(const RNode* link) {
  if (!link->parent) return "the tree itself";
  std::vector<std::string> labels;
  for (; link->parent && labels.size() <= kPlaceDepth; link = link->parent)
    labels.push_back(Label(link->item->GetName()));
  std::reverse(labels.begin(), labels.end());
  return Place(labels);
}

}  // namespace vosmere::tool
