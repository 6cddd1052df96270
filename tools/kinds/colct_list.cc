// A list of collections.
#include "vosmere/collections/colct_list_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"
#include "tools/loss_on_load.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::tool {
namespace {

Record ColctContent(CColctNode& colct) {
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

Record ListContent(RColctItem* head) {
  Record record{"collections"};
  AddChildren<ColctContent>(record, head);
  return record;
}

using LoadedList = LoadedAs<ItemList<RColctItem>, ListContent, CWriteColctListXML,
                            &CWriteColctListXML::SetRColctItemHead, ForEachInChain<RColctItem>>;

constexpr Word kWords[] = {
    {"", "collectionlist", "version"},
    {"*", "collection", "", true},
    {"collection", "title", "="},
    {"collection", "link", "=<2085"},
    {"collection", "description", "="},
    {"collection", "stat", "addDate# lastModified# lastVisit#"},
    {"collection", "uuid", "=$"},
    {"collection", "version", "="},
    {"collection", "build", "basebuild# checkedin?"},
    {"collection", "owner", "="},
};

void Inspect(const XmlNode& element, std::string_view name, std::string_view scope,
             const Report& report) {
  InspectNesting(name, scope, report);
  if (name == "collection" && !ChildOf(element, "link"))
    report("a collection without a link comes back with the address about:blank");
  if (name == "version" && !xml::IsNamed(element.Text().view(), "1"))
    report("the version is not read and comes back as 1");
}

constexpr Count kCounts[] = {{"collection", "collections"}};

}  // namespace

const Kind kColctList = {
    "collectionlist",
    "collection list",
    kCounts,
    {.words = kWords, .inspect = Inspect},
    LoadedList::LoadList<CReadColctListXML, &CReadColctListXML::DetachRColctItemHead>};

}  // namespace vosmere::tool
