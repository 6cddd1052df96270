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

CColctNode* Colct(RNode* link) {
  return static_cast<CColctNode*>(link->item);
}
CFolderNode* Folder(RNode* link) {
  return static_cast<CFolderNode*>(link->item);
}

}  // namespace

CWriteColctTreeOPML::~CWriteColctTreeOPML() = default;

void CWriteColctTreeOPML::SetBasePathAndLibrary(const WChar* basePath, const WChar* library) {
  DoWhole([&] { library_.Assign(basePath, library); });
}

bool CWriteColctTreeOPML::FillData() {
  if (!root_) return false;
  BeginDocument();
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
  if (name.empty())
    Put("No name collections");
  else if (EscapedUtf8(name, title) && !title.empty())
    PutBytes(title);
  else
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
        if (link->type == NT_FOLDER) BeginFolder(Folder(link));
        if (link->type == NT_COLCT) FillColctNodeToBuffer(Colct(link));
        return link->type == NT_FOLDER;
      },
      [this](RNode* link) {
        if (link->type == NT_FOLDER) EndOutline();
      });
}

void CWriteColctTreeOPML::BeginFolder(CFolderNode* folder) {
  Put("<outline text=\"");
  PutNameAndDescription(folder);
  Put("\">");
  FillNodeUUID(folder);
}

void CWriteColctTreeOPML::FillColctNodeToBuffer(CColctNode* colct) {
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

void CWriteColctTreeOPML::EndOutline() {
  Put("</outline>\r\n");
}

void CWriteColctTreeOPML::PutNameAndDescription(CBaseNode* node) {
  const WideView name(node->GetName());
  if (name.empty())
    Put("No name");
  else
    PutText(name.First(kNameLimit - 1));
  const WideView description(node->GetDescription());
  if (description.empty()) return;
  Put("\" description=\"");
  PutText(description);
}

void CWriteColctTreeOPML::PutPath(const WChar* path) {
  const WideView whole(path, SysStringLen(path));
  PutPieces(whole.From(GetRelativeStartPos(path)), kUnitBytes, WithSlashes<PieceToUtf8>);
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
