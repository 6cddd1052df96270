#include "vosmere/xml/opml_writer.h"

#include "vosmere/nodes/colct_node.h"
#include "vosmere/nodes/folder_node.h"
#include "vosmere/nodes/tree_link.h"
#include "vosmere/nodes/tree_walk.h"
#include "vosmere/xml/escape.h"
#include "vosmere/xml/namespaces.h"

namespace vosmere {
namespace {

constexpr std::size_t kSyncUuidLimit = 41;

CColctNode* Colct(RNode* link) {
  return static_cast<CColctNode*>(link->item);
}
CFolderNode* Folder(RNode* link) {
  return static_cast<CFolderNode*>(link->item);
}

int PieceToSlashedUtf8(WideView piece, char* bytes) {
  const int length = PieceToUtf8(piece, bytes);
  for (int i = 0; i < length; ++i) bytes[i] = bytes[i] == '\\' ? '/' : bytes[i];
  return length;
}

}  // namespace

CWriteColctTreeOPML::~CWriteColctTreeOPML() = default;

void CWriteColctTreeOPML::SetBasePathAndLibrary(const WChar* basePath, const WChar* library) {
  basePath_.AssignOrNull(basePath);
  library_.AssignOrNull(library);
  baseLength_ = static_cast<LONG>(WideLength(basePath_.get()));
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
  Put("<opml version=\"2.0\" xmlns:vsm=\"" VOSMERE_NAMESPACE_VSM
      "\" xmlns:dc=\"" VOSMERE_NAMESPACE_DC "\" xmlns:sx=\"" VOSMERE_NAMESPACE_SX "\">\r\n");
  Put("<head><title>");
  const WideView name(root_->item->GetName());
  std::string title;
  if (name.empty())
    Put("No name collections");
  else if (EscapedUtf8(name, title) && !title.empty())
    FillString(title.data(), static_cast<int>(title.size()));
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
  PutPieces(whole.From(GetRelativeStartPos(path)), kUnitBytes, PieceToSlashedUtf8);
}

int CWriteColctTreeOPML::GetRelativeStartPos(const WChar* path) {
  if (!basePath_.get() || !library_.get()) return 0;
  const WideView whole(path, SysStringLen(path));
  const WideView library(library_.get());
  const auto start = static_cast<std::size_t>(baseLength_);
  if (start + library.size >= whole.size) return 0;
  return whole.From(start).First(library.size) == library ? baseLength_ : 0;
}

// The blanks differ between the four forms on purpose: this is how the files have always been.
void CWriteColctTreeOPML::FillNodeStat(CNodeStat* stat) {
  LONG added = 0, modified = 0, lastVisited = 0;
  stat->GetStatTime(&added, &modified, &lastVisited);
  Put("<vsm:stat added=\"");
  PutNumber(added);
  Put("\" modified=\"");
  PutNumber(modified);
  Put("\" lastVisited=\"");
  PutNumber(lastVisited);
  if (stat->GetFlag() != 0) {
    if (stat->IsUnread())
      Put("\" flag=\"");
    else
      Put("\"  flag=\"");
    PutNumber(stat->GetFlag());
  }
  if (stat->IsUnread())
    Put("\" unread=\"true\" />\r\n");
  else if (stat->GetFlag() != 0)
    Put("\" />\r\n");
  else
    Put("\"/>\r\n");
}

void CWriteColctTreeOPML::FillNodeUUID(CBaseNode* node) {
  FillSync(WideView(node->GetUUID()), node->GetVersion());
}

void CWriteColctTreeOPML::FillSync(WideView uuid, int version) {
  if (uuid.empty()) return;
  if (uuid.size >= kSyncUuidLimit) {
    Put("<vsm:error uuidlen=\"");
    PutNumber(static_cast<LONG>(uuid.size));
    Put("\" />");
    return;
  }
  char id[kSyncUuidLimit * kEscapedUnitBytes];
  const int idLength = PieceToEscapedUtf8(uuid, id);
  if (idLength == 0) {
    Put("<vsm:error  uuidutf8=\"false\" />");
    return;
  }
  Put("<sx:sync id=\"");
  FillString(id, idLength);
  if (version != 0) {
    Put("\" version=\"");
    PutNumber(version);
  }
  Put("\"></sx:sync>");
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

void CWriteColctTreeOPML::FillBoolean(bool value, const char* open, const char* close,
                                      int openLength) {
  FillNodeChar(value ? "true" : "false", open, close, openLength);
}

}  // namespace vosmere
