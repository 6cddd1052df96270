// A tree of folders and collections in an OPML document.
#include <algorithm>

#include "tools/kind.h"
#include "tools/kinds/items.h"
#include "tools/loss_on_load.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {
namespace {

/// As documents write it, with slashes.
Json WrittenAddressOf(const CColctNode& colct) {
  Json address = AddressOf(colct.GetUrl());
  if (address.is_null()) return address;
  auto& text = address.get_ref<std::string&>();
  std::replace(text.begin(), text.end(), '\\', '/');
  return address;
}

Record ContentOf(RNode& link) {
  const bool isFolder = link.type == NT_FOLDER;
  const unsigned written = link.parent ? kRaw : kPlain;  // the tree's own name is escaped
  const CBaseNode& item = *link.item;
  Record record{isFolder ? "folder" : "collection"};
  record.Add("name", TextOf(item.GetName()), written);
  record.Add("description", TextOf(item.GetDescription()), written);
  if (!isFolder) {
    const auto& colct = static_cast<const CColctNode&>(item);
    record.Add("xmlUrl", WrittenAddressOf(colct), kOnLine | kRaw);
    record.Add("htmlUrl", TextOf(colct.GetRelationUrl()));
  }
  AddSync(record, item);
  AddMarks(record, item);
  if (!isFolder) {
    AddTimes(record, item);  // a folder's are not in the document
    const auto& colct = static_cast<const CColctNode&>(item);
    record.Add("expanded", colct.GetColctNetData()->GetColctExpandState());
  }
  record.isContainer = isFolder;
  record.children = Records::Of<ContentOf>(link.firstChild);
  return record;
}

Record TreeContent(RNode* root) {
  return ContentOf(*root);
}

using LoadedTree = LoadedAs<Tree, TreeContent, CWriteColctTreeOPML,
                            &CWriteColctTreeOPML::SetTreeRoot, ForEachBelow>;

constexpr Word kWords[] = {
    {"*", "opml", "version"},
    {"*", "head"},
    {"", "title", "="},
    {"", "vsm:opml", "version#"},
    {"*", "body"},
    {"*", "folder", "text title description type! xmlUrl! htmlUrl!", true},
    {"*", "collection", "text title description type xmlUrl<2085 htmlUrl<2085", true},
    {"*", "sx:sync", "id$ version# deleted?"},
    {"*", "vsm:stat"},
    {"collection", "vsm:stat", "added# modified# lastVisited# flag# unread?"},
    {"folder", "vsm:stat", "added! modified! lastVisited! flag# unread?"},
    {"*", "vsm:view"},
    {"collection", "vsm:view", "expand?"},
    {"folder", "vsm:view", "expand!"},
    {"*", "vsm:owner", "", false, "the owner (vsm:owner) is not read"},
    {"*", "vsm:error", "", false,
     "an earlier save dropped an identity that was too long (vsm:error)"},
};

/// A collection by its type, or by its address when it has no type.
std::string NameOf(const XmlNode& element) {
  std::string name = ToUtf8(element.Name().c_str());
  if (name != "outline") return name;
  const auto type = AttributeOf(element, "type");
  return (type ? *type == "rss" : AttributeOf(element, "xmlUrl").has_value()) ? "collection"
                                                                              : "folder";
}

void InspectOutline(const XmlNode& outline, bool isColct, const Report& report) {
  const std::string text = AttributeOf(outline, "text").value_or("");
  const std::string title = AttributeOf(outline, "title").value_or("");
  if (!text.empty() && !title.empty() && text != title)
    report("'text' and 'title' differ, and only the later is kept");
  if (!isColct) return;
  const std::string url = AttributeOf(outline, "xmlUrl").value_or("");
  if (url.find('\\') != std::string::npos) report("a backslash in xmlUrl comes back as a slash");
  if (url.empty()) report("a collection without xmlUrl comes back with the address about:blank");
}

void Inspect(const XmlNode& element, std::string_view name, std::string_view scope,
             const Report& report) {
  const bool isOutline = name == "folder" || name == "collection";
  if (isOutline && scope == "collection") report("outlines inside a collection move out of it");
  if (isOutline) InspectOutline(element, name == "collection", report);
  if (name == "vsm:opml" && AttributeOf(element, "version").value_or("1") != "1")
    report("the version of the extensions comes back as 1");
}

constexpr Count kCounts[] = {{"folder", "folders"},
                             {"collection", "collections"},
                             {"unread", "unread"},
                             {"flag", "flagged"}};

}  // namespace

const Kind kOpml = {"opml",
                    "tree",
                    kCounts,
                    {.words = kWords, .looksThrough = true, .nameOf = NameOf, .inspect = Inspect},
                    LoadedTree::Load<CReadColctTreeOPML, &CReadColctTreeOPML::DetachTreeRoot>};

}  // namespace vosmere::tool
