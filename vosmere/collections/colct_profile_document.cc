// Writes and reads the document that stores the profile of the collections.
#include "vosmere/collections/colct_profile_document.h"

#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWriteColctExData::~CWriteColctExData() = default;

void CWriteColctExData::SetDefaultColctUrl(const WChar* url) {
  const WChar* const stored = url ? GetRelativeStartPos(url) : nullptr;
  DoWhole([&] { defaultColctUrl_.AssignOrNull(WideView(stored).empty() ? nullptr : stored); });
}

const WChar* CWriteColctExData::GetRelativeStartPos(const WChar* url) {
  return url + library_.StartIn(WideView(url), SameNoCase);
}

bool CWriteColctExData::FillData() {
  BeginDocument();
  AddHead();
  for (const RColctExData* cell = head_; cell; cell = cell->next) {
    LosesOf(nullptr, cell->item->GetColctUrl());
    FillColctExDataToBuffer(cell->item);
  }
  AddTail();
  return true;
}

// Intended: the blank before the element, which existing files have.
void CWriteColctExData::AddHead() {
  Put(" <colctprofile version=\"1.0\">\r\n");
  FillDefaultColct();
}

void CWriteColctExData::FillDefaultColct() {
  if (!defaultColctUrl_.get()) return;
  Put("<head>");
  PutElementUnlessNull<"defaultcolct">(defaultColctUrl_.get());
  Put("</head>\r\n");
}

void CWriteColctExData::AddTail() {
  Put("</colctprofile>");
}

void CWriteColctExData::FillColctExDataToBuffer(CColctExData* data) {
  Put("<colct>");
  if (const WChar* const url = data->GetColctUrl())
    PutElementUnlessEmpty<"url">(GetRelativeStartPos(url));
  PutElementUnlessNull<"item">(data->GetItemID());
  Put("</colct>\r\n");
}

// Reading.

namespace {

using namespace xml;

/// What is being read: the list, and the default address, which is not part of an entry.
struct Profile {
  ItemChain<RColctExData>& list;
  SystemText& defaultColctUrl;

  void Begin() { list.Begin(); }
  void End() { list.End(); }
  CColctExData* item() const { return list.item(); }
};
enum Scope : unsigned { kProfile = 1, kColct = 2, kHead = 4 };

void ReadDefaultColct(Profile& profile, const Element& element) {
  const XmlText url = element.Text();
  if (!url.empty()) profile.defaultColctUrl.AssignOrNull(url.c_str());
}

constexpr ScopedElement<Profile> kElements[] = {
    {kAnywhere, "colctprofile", EndItem, kProfile},
    {kProfile, "head", nullptr, kHead},
    {kAnywhere, "colct", BeginItem, kColct, EndItem},
    {kColct, "url", TextTo<&Profile::item, &CColctExData::SetColctUrl>},
    {kColct, "item", TextTo<&Profile::item, &CColctExData::SetItemID>},
    {kAnywhere, "defaultcolct", ReadDefaultColct},
};

}  // namespace

CReadColctExData::~CReadColctExData() = default;

void CReadColctExData::InvokeParser(XmlNode root) {
  Profile profile{list_, defaultColctUrl_};
  if (IsRootNamed(root, "colctprofile")) ReadChildren(kElements, profile, Reported(root), kProfile);
}

}  // namespace vosmere
