#include "vosmere/collections/rss_writer.h"

#include <iterator>

#include "vosmere/base/build_number.h"
#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/collections/internal/rss_words.h"
#include "vosmere/text/internal/rfc822_date.h"
#include "vosmere/text/toolbox.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/xml/internal/escape.h"
#include "vosmere/xml/internal/namespaces.h"

namespace vosmere {
namespace {

void GiveIdentity(CBaseNode* node) {
  if (!*node->GetUUID()) CBaseTool::AssignUUID(node);
}

}  // namespace

CWriteColctRSS::~CWriteColctRSS() = default;

void CWriteColctRSS::SetColctNode(CColctNode* colct) {
  colct_ = colct;
  synced_ = colct && colct->IsNetSynced();
  ordered_ = colct && colct->GetColctNetData()->IsOrdered();
  localRoot_ = colct ? colct->GetLocRNodeRoot() : nullptr;
}

bool CWriteColctRSS::FillData() {
  if (!colct_ && !localRoot_) return false;
  Prepare();
  BeginDocument();
  Put("<rss version=\"2.0\"" VOSMERE_ITEM_PREFIXES ">\r\n<channel>\r\n");
  if (colct_) PutChannel();
  if (localRoot_) {
    PutFolders();
    PutItems();
  }
  Put("</channel>\r\n</rss>");
  return true;
}

// Before anything is written: items name folders, and a folder's position counts the items too.
void CWriteColctRSS::Prepare() {
  if (colct_) GiveIdentity(colct_);
  if (!localRoot_) return;
  WalkBelow(
      localRoot_,
      [](RNode* link) {
        link->item->SetOrder(chain::IsHead(link) ? 1 : link->prev->item->GetOrder() + 1);
        if (link->type == NT_FOLDER || link->type == NT_URL) GiveIdentity(link->item);
        return link->type == NT_FOLDER;
      },
      [](RNode*) {});
}

// The channel.

void CWriteColctRSS::PutChannel() {
  const CColctNetData& net = *colct_->GetColctNetData();
  PutElementUnlessEmpty<"title">(colct_->GetName());
  PutElementUnlessEmpty<"description">(colct_->GetDescription());
  PutGenerator();
  PutElementUnlessEmpty<"dc:creator">(net.GetOwner());
  if (synced_ || ordered_) {
    Put("<vsm:action sync=\"");
    PutWord(synced_ ? "true" : "false");
    Put("\" ordered=\"");
    PutWord(ordered_ ? "true" : "false");
    Put("\" />\r\n");
  }
  PutBuild("vsm:", *colct_);
  const WideView uuid(colct_->GetUUID());
  if (uuid.size > CBaseNode::kMaxUuidLength) PutSyncTooLong(uuid);
  if (!PutSync(uuid, colct_->GetVersion())) PutSyncUnconverted();
}

void CWriteColctRSS::PutGenerator() {
  Put("<generator>Vosmere Browser v");
  PutNumber(kBuildNumber / 100);
  Put(".");
  PutNumber(kBuildNumber % 100 / 10);
  Put(".");
  PutNumber(kBuildNumber % 10);
  Put("\n</generator>\r\n");
}

// Folders.

void CWriteColctRSS::PutFolders() {
  WalkBelow(
      localRoot_,
      [this](RNode* link) {
        if (link->type != NT_FOLDER) return false;
        BeginFolder(static_cast<CFolderNode&>(*link->item));
        return true;
      },
      [this](RNode* link) {
        if (link->type == NT_FOLDER) Put("</vsm:folder>\r\n");
      });
}

void CWriteColctRSS::BeginFolder(CFolderNode& folder) {
  Put("<vsm:folder");
  PutOrder(folder);
  Put(">\r\n");
  PutElementUnlessEmpty<"title">(folder.GetName());
  PutElementUnlessEmpty<"description">(folder.GetDescription());
  PutSync(WideView(folder.GetUUID()), synced_ ? folder.GetVersion() : 0);
}

void CWriteColctRSS::PutOrder(const CBaseNode& item) {
  if (!ordered_) return;
  Put(" order=\"");
  PutNumber(item.GetOrder());
  Put("\"");
}

// Items.

void CWriteColctRSS::PutItems() {
  const PubDateFormat dates;
  WalkBelow(
      localRoot_,
      [&](RNode* link) {
        if (link->type == NT_URL) {
          auto& item = static_cast<CUrlNode&>(*link->item);
          if (!IsLeftOut(item)) PutItem(item, link->parent, dates);
        }
        return link->type == NT_FOLDER;
      },
      [](RNode*) {});
}

bool CWriteColctRSS::IsLeftOut(const CUrlNode& item) const {
  if (!item.HasCheckedIn(nullptr)) return false;
  return item.IsDeleted() || (onlyUnchecked_ && item.GetBaseBuild() != 0);
}

void CWriteColctRSS::PutItem(CUrlNode& item, RNode* parent, const PubDateFormat& dates) {
  Put("<item>");
  PutElementUnlessEmpty<"title">(item.GetName());
  PutLink(item);
  PutElementUnlessEmpty<"description">(item.GetDescription());
  PutAuthor(item);
  PutFolderReference(item, parent);
  PutRelation(item);
  PutPubDate(*item.GetNodeStat(), dates);
  PutStat(*item.GetNodeStat(), " ");
  if (PutItemSync(item)) {
    PutBuild("vsm:", item);
    PutTags(item);
  }
  Put("</item>\r\n");
}

void CWriteColctRSS::PutLink(const CUrlNode& item) {
  const WideView url(item.GetUrl());
  if (url.empty() && !item.HasUrl()) return;
  if (item.GetItemType() != IT_NOTE || url[0] != 'z') {
    PutElement<"link">(url);
    return;
  }
  Put("<link>");
  PutPieces(url, kEscapedUnitBytes, WithSlashes<PieceToEscapedUtf8>);
  Put("</link>\r\n");
}

void CWriteColctRSS::PutAuthor(const CUrlNode& item) {
  const WChar* author = item.GetAuthor();
  if ((!author || !*author) && colct_) author = colct_->GetColctNetData()->GetOwner();
  PutElementUnlessEmpty<"author">(author);
}

void CWriteColctRSS::PutFolderReference(const CUrlNode& item, RNode* parent) {
  const bool inFolder = parent != localRoot_;
  if (!inFolder && !ordered_) return;
  Put("<vsm:folderref");
  if (inFolder) {
    Put(" folderid=\"");
    PutEscaped(WideView(parent->item->GetUUID()));
    Put("\"");
  }
  PutOrder(item);
  Put("/>");
}

void CWriteColctRSS::PutRelation(const CUrlNode& item) {
  const tagVSMITEMTYPE type = item.GetItemType();
  if (type <= IT_URL || type > IT_FILE) return;
  Put("<vsm:rel type=\"");
  PutWord(kItemTypeWords[type]);
  Put("\" ");
  if (type == IT_FILE) {
    const CUrlProp* const prop = item.GetUrlProp();
    const tagVSMITEMFILETYPE fileType = prop ? prop->GetFileType() : FT_OTHER;
    Put("subtype=\"");
    PutWord(kFileTypeWords[fileType > FT_OTHER && fileType <= FT_XLS ? fileType : FT_OTHER]);
    Put("\" ");
  }
  const WideView related(item.GetRelationUrl());
  if (type != IT_NOTE && !related.empty()) {
    Put("href=\"");
    PutEscaped(related);
    Put("\" ");
  }
  Put("/>");
}

void CWriteColctRSS::PutPubDate(const CNodeStat& stat, const PubDateFormat& dates) {
  LONG modified = 0;
  stat.GetStatTime(nullptr, &modified, nullptr);
  char date[PubDateFormat::kDateRoom];
  const int length = dates.Date(modified, date);
  Put("<pubDate>");
  FillString(date, length);
  Put(" ");
  PutWord(dates.zone());
  Put("</pubDate>\r\n");
}

// False when it ends the item.
bool CWriteColctRSS::PutItemSync(const CUrlNode& item) {
  const WideView uuid(item.GetUUID());
  if (uuid.size <= CBaseNode::kMaxUuidLength)
    return PutSync(uuid, item.GetVersion(), item.IsDeleted());
  PutSyncTooLong(uuid);
  return false;
}

void CWriteColctRSS::PutTags(const CUrlNode& item) {
  const CUrlProp* const prop = item.GetUrlProp();
  CUrlProp::TagList* const tags = prop ? prop->GetTagsHead() : nullptr;
  if (!tags) return;
  Put("<vsm:tags>");
  for (const CUrlProp::TagList* tag = tags; tag; tag = tag->next) {
    if (tag != tags) Put(" ");
    PutEscaped(WideView(tag->data));
  }
  Put("</vsm:tags>\r\n");
}

void CWriteColctRSS::PutWord(std::string_view word) {
  FillString(word.data(), static_cast<int>(word.size()));
}

}  // namespace vosmere
