// The tags document: its writer, then its reader.
#include "vosmere/tags/tags_document.h"

#include <algorithm>
#include <new>
#include <string>

#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWriteTagsXML::CWriteTagsXML() : name_(new std::string) {}

CWriteTagsXML::~CWriteTagsXML() = default;

bool CWriteTagsXML::FillData() {
  BeginDocument();
  AddHead();
  for (const auto* cell = head_; cell; cell = cell->next) FillTagGroup(cell->data);
  AddTail();
  return true;
}

void CWriteTagsXML::AddHead() {
  Put("<vsmtags version=\"1.0\">\r\n");
}

void CWriteTagsXML::AddTail() {
  Put("</vsmtags>");
}

// Converts a name before its element is begun, because without a name there is no element.
bool CWriteTagsXML::ConvertName(const WChar* name) {
  name_->clear();
  return EscapedUtf8(WideView(name), *name_, Stands::kInAttribute);
}

void CWriteTagsXML::FillTagGroup(CTagGroup* group) {
  LosesOf(nullptr, group->GetName());
  if (!ConvertName(group->GetName())) return;
  Put("<group");
  if (!name_->empty()) {
    Put(" name=\"");
    PutBytes(*name_);
    Put("\"");
  }
  Put(">");
  for (const auto* cell = group->GetTagItemHead(); cell; cell = cell->next) FillTagItem(cell->data);
  Put("</group>");
}

static constexpr int kMostCount = 10000000;

void CWriteTagsXML::FillTagItem(CTagItem* item) {
  LosesOf(nullptr, item->GetName());
  if (!ConvertName(item->GetName())) return;
  LoseIf(item->GetCount() < 0 || item->GetCount() > kMostCount,
         "count is limited to 0 to 10,000,000", LossKind::kChanged);
  Put("<tag name=\"");
  PutBytes(*name_);
  if (item->GetCount() != 1) {
    Put("\" count=\"");
    PutNumber(std::clamp(item->GetCount(), 0, kMostCount));
  }
  Put("\" />");
}

// Reading.

namespace {

using namespace xml;

struct Tags {
  CTagStore& store;
  CTagGroup* group = nullptr;
  CTagItem* item = nullptr;

  void BeginGroup() {
    group = CTagStore::CreateTagGroup();
    if (group && store.AddTagGroup(group)) return;
    CTagStore::DeleteTagGroup(group);
    throw std::bad_alloc();
  }
  void BeginItem() {
    item = CTagStore::CreateTagItem();
    if (item && group->AddTagItem(item)) return;
    CTagStore::DeleteTagItem(item);
    throw std::bad_alloc();
  }
};
enum Scope : unsigned { kTags = 1, kGroup = 2 };

constexpr Field<CTagGroup> kGroupFields[] = {{"name", Text<&CTagGroup::SetName>}};
constexpr Field<CTagItem> kTagFields[] = {
    {"name", Text<&CTagItem::SetName>},
    {"count", Number<&CTagItem::SetCount>},
};

void ReadGroup(Tags& tags, const Element& element) {
  tags.BeginGroup();
  AttributesTo<&Tags::group, kGroupFields>(tags, element);
}

void ReadTag(Tags& tags, const Element& element) {
  tags.BeginItem();
  AttributesTo<&Tags::item, kTagFields>(tags, element);
}

constexpr ScopedElement<Tags> kElements[] = {
    {kGroup, "tag", ReadTag},
    {kTags, "group", ReadGroup, kGroup},
};

}  // namespace

CReadTagsXML::~CReadTagsXML() = default;

void CReadTagsXML::InvokeParser(XmlNode root) {
  Tags tags{store_};
  if (IsRootNamed(root, "vsmtags")) ReadChildren(kElements, tags, Reported(root), kTags);
}

}  // namespace vosmere
