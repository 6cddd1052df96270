// Writes a tree of folders and collections as an OPML document.
#include "vosmere/collections/opml_writer.h"

#include <functional>
#include <string>

#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/xml/internal/escape.h"
#include "vosmere/xml/internal/namespaces.h"

namespace vosmere {
namespace {

constexpr int kAroundOutlines = 2;  // levels of elements: the root and the body

CColctNode* Colct(const RNode* link) {
  return static_cast<CColctNode*>(link->item);
}
CFolderNode* Folder(RNode* link) {
  return static_cast<CFolderNode*>(link->item);
}

bool IsEmpty(const WChar* text) {
  return !text || !*text;
}

/// Whether an outline certainly holds all of a collection that has an identity and a version.
/// Nearly all are plain, which this shows sooner than asking about each part.
bool IsPlain(const CColctNode& colct) {
  const CColctNetData& net = *colct.GetColctNetData();
  return !colct.GetLocRNodeRoot() && !colct.GetUrlProp() && colct.GetItemType() == IT_URL &&
         IsEmpty(colct.GetAuthor()) && IsEmpty(colct.GetRelationUrl()) && IsEmpty(net.GetOwner()) &&
         !net.IsOrdered() && !net.IsSynced() && !colct.IsDeleted() && colct.GetBaseBuild() == 0 &&
         colct.GetCheckedIn() == CBaseNode::kCheckedIn;
}

}  // namespace

CWriteColctTreeOPML::~CWriteColctTreeOPML() = default;

void CWriteColctTreeOPML::SetBasePathAndLibrary(const WChar* basePath, const WChar* library) {
  DoWhole([&] { library_.Assign(basePath, library); });
}

bool CWriteColctTreeOPML::FillData() {
  if (!root_) return false;
  BeginDocument();
  if (ReportsLosses()) LoseOf(root_);
  AddHead();
  FillNodeUUID(root_->item);
  FillFolderStructure(root_);
  AddTail();
  return true;
}

void CWriteColctTreeOPML::AddHead() {
  Put("<opml version=\"2.0\"" VOSMERE_ITEM_PREFIXES ">\r\n");
  Put("<head><title>");
  const WideView name(root_->item->GetName());
  std::string title;
  LoseIf(name.empty(), "an empty name becomes \"No name collections\"", LossKind::kChanged);
  if (name.empty())
    Put("No name collections");
  else if (EscapedUtf8(name, title) && !title.empty())
    PutBytes(title);
  else  // the name cannot be converted to UTF-8
    Put("My Collections");
  Put("</title>");
  if (opmlVersion_ != 0) {
    Put("<vsm:opml version=\"");
    PutNumber(opmlVersion_);
    Put("\" />\r\n");
  }
  Put("</head><body>");
}

void CWriteColctTreeOPML::AddTail() {
  Put("</body></opml>");
}

void CWriteColctTreeOPML::FillFolderStructure(RNode* folder) {
  WalkBelow(
      folder,
      [this](RNode* link) {
        if (ReportsLosses()) LoseOf(link);
        if (link->type == NT_FOLDER) BeginFolder(Folder(link));
        if (link->type == NT_COLCT) FillColctNodeToBuffer(Colct(link));
        if (link->type == NT_URL && writesPages_) FillPage(static_cast<CUrlNode*>(link->item));
        return link->type == NT_FOLDER;
      },
      [this](RNode* link) {
        if (link->type == NT_FOLDER) EndOutline();
      });
}

// Reports what reading does not restore of a link. Slashes in its address are not reported, since
// addresses have them in every document of this kind.
void CWriteColctTreeOPML::LoseOf(const RNode* link) {
  if (!link->item) return;
  const CBaseNode& item = *link->item;
  LosesOf(&item, item.GetName());
  const bool isVersionWritten = *item.GetUUID() && item.GetVersion() != 0;
  if (isVersionWritten && link->type == NT_COLCT && !link->firstChild && IsPlain(*Colct(link)))
    return;
  const unsigned held = kIdentity | (isVersionWritten ? kVersion : 0u);
  if (link->type == NT_COLCT)
    LoseOfColct(held, *Colct(link));
  else if (link->type == NT_FOLDER)
    LoseAllBut(link->parent ? held | kDescription : held, item);
  else if (link->type == NT_URL && writesPages_)
    LoseAllBut(held | kDescription | kTimes | kMarks, static_cast<const CUrlNode&>(item));
  else
    return LoseWhole(item, "a page is left out");
  LoseIf(link->type == NT_COLCT && link->firstChild, "links below a collection are left out");
}

void CWriteColctTreeOPML::LoseOfColct(unsigned held, const CColctNode& colct) {
  LoseAllBut(held | kDescription | kTimes | kMarks | kRelated, colct);
  const CColctNetData& net = *colct.GetColctNetData();
  const RNode* const local = colct.GetLocRNodeRoot();
  LoseIf(IsThere(colct.GetRelationUrl()), "htmlUrl is lost");
  LoseIf(IsThere(net.GetOwner()), "owner is lost");
  LoseIf(net.IsOrdered(), "ordered is lost");
  LoseIf(net.IsSynced(), "synced is lost");
  LoseIf(local && local->firstChild, "the items of a collection are left out");
}

void CWriteColctTreeOPML::BeginFolder(CFolderNode* folder) {
  Nest(kAroundOutlines);
  Put("<outline text=\"");
  PutNameAndDescription(folder);
  Put("\">");
  FillNodeUUID(folder);
}

void CWriteColctTreeOPML::FillColctNodeToBuffer(CColctNode* colct) {
  Nest(kAroundOutlines);
  Deepen(kAroundOutlines + 1);  // for the elements inside, such as the statistics
  Put("<outline text=\"");
  PutNameAndDescription(colct);
  Put("\" type=\"rss\" xmlUrl=\"");
  PutPath(colct->GetUrl());
  Put("\">");
  FillNodeStat(colct->GetNodeStat());
  FillNodeUUID(colct);
  FillNetData(colct->GetColctNetData());
  EndOutline();
}

void CWriteColctTreeOPML::FillPage(CUrlNode* page) {
  Nest(kAroundOutlines);
  Deepen(kAroundOutlines + 1);
  Put("<outline text=\"");
  PutNameAndDescription(page);
  Put("\" type=\"link\" url=\"");
  PutRawAttribute(WideView(page->GetUrl()));
  Put("\">");
  FillNodeStat(page->GetNodeStat());
  FillNodeUUID(page);
  EndOutline();
}

void CWriteColctTreeOPML::EndOutline() {
  Unnest();
  Put("</outline>\r\n");
}

void CWriteColctTreeOPML::PutNameAndDescription(CBaseNode* node) {
  const WideView name(node->GetName());
  LoseIf(name.empty(), "an empty name becomes \"No name\"", LossKind::kChanged);
  LoseIf(name.size >= kNameLimit, "name is cut to 199 characters", LossKind::kCut);
  if (name.empty())
    Put("No name");
  else
    PutRawAttribute(name.First(kNameLimit - 1));
  const WideView description(node->GetDescription());
  if (description.empty()) return;
  Put("\" description=\"");
  PutRawAttribute(description);
}

void CWriteColctTreeOPML::PutPath(const WChar* path) {
  const WideView whole(path, SysStringLen(path));
  PutRawPath(whole.From(GetRelativeStartPos(path)));
}

int CWriteColctTreeOPML::GetRelativeStartPos(const WChar* path) {
  return static_cast<int>(library_.StartIn(WideView(path, SysStringLen(path)), std::equal_to<>()));
}

void CWriteColctTreeOPML::FillNodeStat(CNodeStat* stat) {
  PutStat(*stat, "  ");
}

void CWriteColctTreeOPML::FillNodeUUID(CBaseNode* node) {
  FillSync(WideView(node->GetUUID()), node->GetVersion());
}

void CWriteColctTreeOPML::FillSync(WideView uuid, int version) {
  if (uuid.empty()) return;
  Deepen(kAroundOutlines + 1);
  if (uuid.size > kLongestSyncId)
    PutSyncTooLong(uuid);
  else if (!PutSync(uuid, version))
    PutSyncUnconverted();
}

void CWriteColctTreeOPML::FillNetData(CColctNetData* data) {
  const WideView owner(data->GetOwner());
  if (!owner.empty()) {
    Put("<vsm:owner>");
    PutEscaped(owner);
    Put("</vsm:owner>\r\n");
  }
  if (data->GetColctExpandState()) Put("<vsm:view expand=\"true\" />\r\n");
}

}  // namespace vosmere
