// Fields that the items of several kinds of document share.
#pragma once

#include "tools/record.h"
#include "tools/text.h"
#include "vosmere/nodes/base_node.h"

namespace vosmere::tool {

/// Null for null.
inline Json TextOf(const WChar* text) {
  return text ? Json(ToUtf8(text)) : Json();
}

/// Identity, version, and whether the item is deleted.
inline void AddSync(Record& record, const CBaseNode& item, unsigned ofDeleted = kPlain) {
  record.Add("id", TextOf(item.GetUUID()));
  record.Add("version", item.GetVersion());
  record.Add("deleted", item.IsDeleted(), ofDeleted);
}

inline void AddBuild(Record& record, const CBaseNode& item) {
  record.Add("baseBuild", item.GetBaseBuild());
  record.Add("checkedIn", item.HasCheckedIn(nullptr));
}

inline void AddMarks(Record& record, const CBaseNode& item) {
  record.Add("unread", item.GetNodeStat()->IsUnread(), kOnLine);
  record.Add("flag", item.GetNodeStat()->GetFlag(), kOnLine);
}

inline void AddTimes(Record& record, const CBaseNode& item) {
  LONG added = 0, modified = 0, lastVisited = 0;
  item.GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  record.Add("added", added);
  record.Add("modified", modified);
  record.Add("lastVisited", lastVisited);
}

}  // namespace vosmere::tool
