#include "vosmere/xml/write_items.h"

#include "vosmere/tree/base_node.h"
#include "vosmere/xml/internal/escape.h"

namespace vosmere {

CWriteItems::~CWriteItems() = default;

bool CWriteItems::PutSync(WideView uuid, LONG version, bool deleted) {
  char id[kLongestSyncId * kEscapedUnitBytes];
  const int idLength = PieceToEscapedUtf8(uuid, id);
  if (idLength == 0 && !uuid.empty()) return false;
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
