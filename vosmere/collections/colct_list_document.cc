// Writes and reads the document that stores a list of collections.
#include "vosmere/collections/colct_list_document.h"

#include "vosmere/tree/tree_link.h"
#include "vosmere/xml/internal/item_fields.h"
#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWriteColctListXML::~CWriteColctListXML() = default;

bool CWriteColctListXML::FillData() {
  BeginDocument();
  AddHead();
  for (const RColctItem* cell = head_; cell; cell = cell->next) {
    LoseOf(*cell->item);
    if (cell->item->GetColctType() == CT_DEFAULT) FillColctNodeToBuffer(cell->item);
  }
  AddTail();
  return true;
}

// Intended: the blank before the element, which existing files have.
void CWriteColctListXML::AddHead() {
  Put(" <collectionlist version=\"1.0\">\r\n");
}

void CWriteColctListXML::AddTail() {
  Put("</collectionlist>");
}

void CWriteColctListXML::LoseOf(const CColctNode& colct) {
  if (!ReportsLosses()) return;
  if (colct.GetColctType() != CT_DEFAULT)
    return LoseWhole(colct, "a collection of a special type is left out");
  LoseAllBut(kDescription | kIdentity | kBuild | kTimes, colct);
  const CColctNetData& net = *colct.GetColctNetData();
  const RNode* const local = colct.GetLocRNodeRoot();
  LoseIf(net.IsOrdered(), "ordered is lost");
  LoseIf(net.IsSynced(), "synced is lost");
  LoseIf(net.GetColctExpandState(), "expanded is lost");
  LoseIf(local && local->firstChild, "the items of a collection are left out");
}

void CWriteColctListXML::FillColctNodeToBuffer(CColctNode* colct) {
  Put("<collection>");
  PutElementUnlessEmpty<"title">(colct->GetName());
  PutElementUnlessEmpty<"link">(colct->GetUrl());
  PutElementUnlessEmpty<"description">(colct->GetDescription());
  FillNodeStat(colct->GetNodeStat());
  FillColctNodeExtra(colct);
  FileNetData(colct->GetColctNetData());
  Put("</collection>\r\n");
}

void CWriteColctListXML::FillNodeStat(CNodeStat* stat) {
  PutStatDates(*stat);
}

void CWriteColctListXML::FillColctNodeExtra(CColctNode* colct) {
  PutElementUnlessEmpty<"uuid">(colct->GetUUID());
  if (colct->GetVersion() != 0) PutElement<"version">(colct->GetVersion());
  PutBuild("", *colct);
}

void CWriteColctListXML::FileNetData(CColctNetData* data) {
  PutElementUnlessEmpty<"owner">(data->GetOwner());
}

// Reading.

namespace {

using namespace xml;

using List = ItemChain<RColctItem>;
enum Scope : unsigned { kList = 1, kCollection = 2 };

// Any value but "true" means not checked in. Without the attribute the item stays checked in, as
// new items are.
void CheckedInWhenTrue(CBaseNode& item, const WChar* value) {
  item.SetCheckedIn(IsNamed(WideView(value), "true") ? CBaseNode::kCheckedIn : 0);
}

void SetOwner(CColctNode& colct, const WChar* owner) {
  colct.GetColctNetData()->SetOwner(owner);
}

constexpr Field<CBaseNode> kColctBuildFields[] = {
    {"basebuild", Number<&CBaseNode::SetBaseBuild>},
    {"checkedin", CheckedInWhenTrue, FitsTruth},
};

// Versions are not read; the header says why. Only a version other than 1, which new items have, is
// a loss.
void Version(List&, const Element& element) {
  NoLoss(element);
  if (element.report() && !IsNamed(element.Text().view(), "1"))
    element.report()->Lose(LossKind::kNotKept, "the version is not read and becomes 1");
}

void SayUnsaid(List& list, Report& report) {
  if (list.item()) SayTimes(report, *list.item()->GetNodeStat());
  if (!report.Says("link"))
    report.Lose(LossKind::kUnsaid, "a collection without a link gets the address about:blank");
}

constexpr ScopedElement<List> kElements[] = {
    {kAnywhere, "collectionlist", EndItem, kList},
    {kAnywhere, "collection", BeginItem, kCollection, EndItem, SayUnsaid},
    {kCollection, "stat", AttributesTo<&List::item, kStatDateFields>},
    {kCollection, "build", AttributesTo<&List::item, kColctBuildFields>},
    {kCollection, "title", TextTo<&List::item, &CBaseNode::SetName>},
    {kCollection, "link", TextTo<&List::item, &CUrlNode::SetUrl>},
    {kCollection, "description", TextTo<&List::item, &CBaseNode::SetDescription>},
    {kCollection, "uuid", TextTo<&List::item, &CBaseNode::SetUUID>},
    {kCollection, "owner", TextTo<&List::item, SetOwner>},
    {kCollection, "version", Version},
};

}  // namespace

CReadColctListXML::~CReadColctListXML() = default;

void CReadColctListXML::InvokeParser(XmlNode root) {
  if (IsRootNamed(root, "collectionlist")) ReadChildren(kElements, list_, Reported(root), kList);
}

}  // namespace vosmere
