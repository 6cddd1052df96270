// Writes a collection as an RSS document.
#include "vosmere/collections/rss_writer.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/base/ascii.h"
#include "vosmere/base/build_number.h"
#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/collections/internal/rss_words.h"
#include "vosmere/text/internal/pub_date_format.h"
#include "vosmere/text/toolbox.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/internal/blank_page.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/xml/internal/escape.h"
#include "vosmere/xml/internal/namespaces.h"

namespace vosmere {
namespace {

/// Whether reading restores these tags, which are written as one text separated by blanks: no tag
/// may be empty, contain a separator or equal another one apart from letter case.
bool CanBeTags(const CUrlProp::TagList* head) {
  std::vector<std::basic_string<WChar>> tags;
  for (const CUrlProp::TagList* tag = head; tag; tag = tag->next) {
    const WideView text(tag->data);
    if (text.empty() || std::any_of(text.begin(), text.end(), CUrlProp::IsSeparator)) return false;
    if (head->next)
      std::transform(text.begin(), text.end(), std::back_inserter(tags.emplace_back()),
                     ascii::Fold<WChar>);
  }
  std::sort(tags.begin(), tags.end());
  return std::adjacent_find(tags.begin(), tags.end()) == tags.end();
}

void GiveIdentity(CBaseNode* node) {
  if (!*node->GetUUID()) CBaseTool::AssignUUID(node);
}

// Gives a link its position and identity. To be called in the order of a walk: positions count
// folders and items together, and items refer to the identities of the folders around them.
void Prepare(RNode* link) {
  link->item->SetOrder(chain::IsHead(link) ? 1 : link->prev->item->GetOrder() + 1);
  if (link->type == NT_FOLDER || link->type == NT_URL) GiveIdentity(link->item);
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
  if (colct_) GiveIdentity(colct_);
  if (ReportsLosses()) LoseOfTree();
  BeginDocument();
  Put("<rss version=\"2.0\"" VOSMERE_ITEM_PREFIXES ">\r\n<channel>\r\n");
  if (colct_) PutChannel();
  if (localRoot_) PutTree();
  Put("</channel>\r\n</rss>");
  return true;
}

// Reports what reading does not restore; rss_reader.h has the list.

void CWriteColctRSS::LoseOfTree() {
  if (colct_) LoseOfColct(*colct_);
  if (!localRoot_) return;
  std::set<std::basic_string_view<WChar>> identities;
  WalkBelow(
      localRoot_,
      [&](RNode* link) {
        Prepare(link);
        if (link->type == NT_URL)
          LoseOfItem(static_cast<const CUrlNode&>(*link->item));
        else if (link->type != NT_FOLDER && link->item)
          LoseWhole(*link->item, "an item that is neither a folder nor a page is left out");
        else if (link->type == NT_FOLDER)
          LoseOfFolder(*link);
        if (link->type == NT_FOLDER && !identities.insert(link->item->GetUUID()).second)
          Lose(LossKind::kChanged,
               "several folders have the same identity: their contents move to the first");
        return link->type == NT_FOLDER;
      },
      [](RNode*) {});
}

void CWriteColctRSS::LoseOfColct(const CColctNode& colct) {
  const WideView url(colct.GetUrl());
  LoseAllBut(kDescription | kIdentity | kVersion | kBuild, colct);
  LoseIf(!url.empty() && !(url == WideView(kBlankPage)), "the collection's address is lost");
  LoseIf(colct.GetColctNetData()->GetColctExpandState(), "expanded is lost");
}

void CWriteColctRSS::LoseOfFolder(const RNode& link) {
  LoseAllBut(kDescription | kIdentity | (synced_ ? kVersion : 0u), *link.item);
  const bool isBehindPage = !chain::IsHead(&link) && link.prev->type == NT_URL;
  LoseIf(isBehindPage && !ordered_, "the order of pages and folders is lost", LossKind::kChanged);
}

void CWriteColctRSS::LoseOfItem(const CUrlNode& item) {
  if (IsLeftOut(item))
    return LoseWhole(item, item.IsDeleted()
                               ? "an item that was checked in and then deleted is left out"
                               : "an item that was checked in is left out");
  const tagVSMITEMTYPE type = item.GetItemType();
  const CUrlProp* const prop = item.GetUrlProp();
  const WideView url(item.GetUrl());
  const bool ownsAuthor = colct_ && !WideView(colct_->GetColctNetData()->GetOwner()).empty();
  LoseAllBut(type == IT_WEBPAGE || type == IT_FILE ? ~0u : ~unsigned{kRelated}, item);
  LoseIf(type < IT_URL || type > IT_FILE, "type is lost");
  LoseIf(prop && type != IT_FILE && prop->GetFileType() != FT_OTHER, "fileType is lost");
  LoseIf(!item.GetUrl() && type == IT_URL, "an empty link becomes \"about:blank\"",
         LossKind::kChanged);
  LoseIf(type == IT_NOTE && !url.empty() && url[0] == 'z' &&
             std::count(url.begin(), url.end(), '\\') > 0,
         "backslashes in link become slashes", LossKind::kChanged);
  LoseIf(ownsAuthor && WideView(item.GetAuthor()).empty(),
         "an empty author becomes the collection's owner", LossKind::kChanged);
  LoseIf(prop && !CanBeTags(prop->GetTagsHead()), "tags are changed", LossKind::kChanged);
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
    PutBytes(synced_ ? "true" : "false");
    Put("\" ordered=\"");
    PutBytes(ordered_ ? "true" : "false");
    Put("\" />\r\n");
  }
  PutBuild("vsm:", *colct_);
  const WideView uuid(colct_->GetUUID());
  if (uuid.size > CBaseNode::kMaxUuidLength) PutSyncTooLong(uuid);
  if (!PutSync(uuid, colct_->GetVersion())) PutSyncUnconverted();
}

// The digits of the build number are the version: build 123 is "v1.2.3".
void CWriteColctRSS::PutGenerator() {
  Put("<generator>Vosmere Browser v");
  PutNumber(kBuildNumber / 100);
  Put(".");
  PutNumber(kBuildNumber % 100 / 10);
  Put(".");
  PutNumber(kBuildNumber % 10);
  Put("\n</generator>\r\n");
}

// All folders come before the items, but one walk makes both: each walk over a large tree takes as
// long as writing a third of it, because it waits for memory.
void CWriteColctRSS::PutTree() {
  const PubDateFormat dates;
  OwnedPointer<CChunkBuffer> items(new CChunkBuffer);
  WalkBelow(
      localRoot_,
      [&](RNode* link) {
        Prepare(link);
        if (link->type == NT_FOLDER) BeginFolder(static_cast<CFolderNode&>(*link->item));
        if (link->type != NT_URL) return link->type == NT_FOLDER;
        SwapBuffer(items);
        auto& item = static_cast<CUrlNode&>(*link->item);
        if (!IsLeftOut(item)) PutItem(item, link->parent, dates);
        SwapBuffer(items);
        return false;
      },
      [this](RNode* link) {
        if (link->type != NT_FOLDER) return;
        Unnest();
        Put("</vsm:folder>\r\n");
      });
  PutAside(*items);
}

// Folders.

void CWriteColctRSS::BeginFolder(CFolderNode& folder) {
  Nest(3);  // the elements rss and channel, and those inside a folder
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
  PutEscapedPath(url);
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
    PutEscaped(WideView(parent->item->GetUUID()), Stands::kInAttribute);
    Put("\"");
  }
  PutOrder(item);
  Put("/>");
}

void CWriteColctRSS::PutRelation(const CUrlNode& item) {
  const tagVSMITEMTYPE type = item.GetItemType();
  if (type <= IT_URL || type > IT_FILE) return;
  Put("<vsm:rel type=\"");
  PutBytes(kItemTypeWords[type]);
  Put("\" ");
  if (type == IT_FILE) {
    const CUrlProp* const prop = item.GetUrlProp();
    const tagVSMITEMFILETYPE fileType = prop ? prop->GetFileType() : FT_OTHER;
    Put("subtype=\"");
    PutBytes(kFileTypeWords[fileType > FT_OTHER && fileType <= FT_XLS ? fileType : FT_OTHER]);
    Put("\" ");
  }
  const WideView related(item.GetRelationUrl());
  if (type != IT_NOTE && !related.empty()) {
    Put("href=\"");
    PutEscaped(related, Stands::kInAttribute);
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
  PutBytes(dates.zone());
  Put("</pubDate>\r\n");
}

// False if nothing more may be written for this item, because its identity is unusable.
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

}  // namespace vosmere
