// Writes the elements that several documents of items share.
#include "vosmere/xml/write_items.h"

#include "vosmere/tree/base_node.h"
#include "vosmere/tree/url_node.h"
#include "vosmere/xml/internal/escape.h"

namespace vosmere {

CWriteItems::~CWriteItems() = default;

void CWriteItems::LoseAllBut(unsigned held, const CBaseNode& item) {
  if (!ReportsLosses()) return;
  LosesOf(&item, item.GetName());
  const auto loses = [=](Part part, bool isThere) { return isThere && !(held & part); };
  const CNodeStat& stat = *item.GetNodeStat();
  // A quick test first, because most items lose nothing.
  const bool isPlain = (held & kDescription || !*item.GetDescription()) &&
                       (held & kIdentity || !*item.GetUUID()) &&
                       (held & kVersion || item.GetVersion() == 1) && !item.IsDeleted() &&
                       item.GetBaseBuild() == 0 && item.HasCheckedIn(nullptr) &&
                       (held & kTimes || !stat.GetSetTimes()) &&
                       (held & kMarks || (!stat.IsUnread() && stat.GetFlag() == 0));
  if (isPlain) return;
  // Documents write the checked-in state only together with a base build. Without one it is lost,
  // unless readers can conclude it because the item is deleted.
  const bool isChanged = item.GetBaseBuild() == 0 && !item.HasCheckedIn(nullptr);
  LoseIf(loses(kDescription, *item.GetDescription()), "description is lost");
  LoseIf(loses(kIdentity, *item.GetUUID()), "id is lost");
  LoseIf(loses(kVersion, item.GetVersion() != 1), "version is lost");
  LoseIf(loses(kDeleted, item.IsDeleted()), "deleted is lost");
  LoseIf(loses(kBuild, item.GetBaseBuild() != 0), "baseBuild is lost");
  LoseIf(isChanged && !(held & kBuild && item.IsDeleted()), "checkedIn is lost");
  LoseIf(loses(kTimes, stat.GetSetTimes()), "added, modified and lastVisited are lost");
  LoseIf(loses(kMarks, stat.IsUnread()), "unread is lost");
  LoseIf(loses(kMarks, stat.GetFlag() != 0), "flag is lost");
}

void CWriteItems::LoseAllBut(unsigned held, const CUrlNode& page) {
  if (!ReportsLosses()) return;
  LoseAllBut(held, static_cast<const CBaseNode&>(page));
  const auto loses = [=](Part part, bool isThere) { return isThere && !(held & part); };
  const CUrlProp* const prop = page.GetUrlProp();
  LoseIf(loses(kAuthor, IsThere(page.GetAuthor())), "author is lost");
  LoseIf(loses(kRelated, IsThere(page.GetRelationUrl())), "relationUrl is lost");
  LoseIf(loses(kType, page.GetItemType() != IT_URL), "type is lost");
  if (!prop) return;
  LoseIf(loses(kType, prop->GetFileType() != FT_OTHER), "fileType is lost");
  LoseIf(IsThere(prop->GetFileExtension()), "fileExtension is lost");
  LoseIf(loses(kTags, prop->GetTagsHead()), "tags are lost");
}

void CWriteItems::LoseWhole(const CBaseNode& item, const char* what) {
  LosesOf(&item, item.GetName());
  Lose(LossKind::kNotKept, what);
}

bool CWriteItems::PutSync(WideView uuid, LONG version, bool deleted) {
  char id[kLongestSyncId * kEscapedUnitBytes];
  int idLength = 0;
  if (!EscapeShort(uuid, id, &idLength)) return false;
  Put("<sx:sync id=\"");
  FillString(id, idLength);
  if (version != 0) {
    Put("\" version=\"");
    PutNumber(version);
  }
  if (deleted) Put("\" deleted=\"true");
  Put("\"></sx:sync>");
  return true;
}

void CWriteItems::PutSyncTooLong(WideView uuid) {
  Put("<vsm:error uuidlen=\"");
  PutNumber(static_cast<LONG>(uuid.size));
  Put("\" />");
}

void CWriteItems::PutSyncUnconverted() {
  Put("<vsm:error  uuidutf8=\"false\" />");
}

void CWriteItems::PutStat(const CNodeStat& stat, std::string_view blanksBeforeLoneFlag) {
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  Put("<vsm:stat added=\"");
  PutNumber(added);
  Put("\" modified=\"");
  PutNumber(modified);
  Put("\" lastVisited=\"");
  PutNumber(lastVisited);
  const std::string_view blanks = stat.IsUnread() ? " " : blanksBeforeLoneFlag;
  if (stat.GetFlag() != 0) {
    Put("\"");
    PutBytes(blanks);
    Put("flag=\"");
    PutNumber(stat.GetFlag());
  }
  if (stat.IsUnread())
    Put("\" unread=\"true\" />\r\n");
  else if (stat.GetFlag() != 0)
    Put("\" />\r\n");
  else
    Put("\"/>\r\n");
}

void CWriteItems::PutStatDates(const CNodeStat& stat) {
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  Put("<stat addDate=\"");
  PutNumber(added);
  Put("\" lastModified=\"");
  PutNumber(modified);
  Put("\" lastVisit=\"");
  PutNumber(lastVisited);
  Put("\"/>\r\n");
}

void CWriteItems::PutBuild(std::string_view prefix, const CBaseNode& item) {
  if (item.GetBaseBuild() == 0) return;
  Put("<");
  PutBytes(prefix);
  Put("build basebuild=\"");
  PutNumber(item.GetBaseBuild());
  if (item.HasCheckedIn(nullptr))
    Put("\" />\r\n");
  else
    Put("\" checkedin=\"false\" />\r\n");
}

}  // namespace vosmere
