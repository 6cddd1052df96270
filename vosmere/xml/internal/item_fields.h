// The attributes that describe an item in every document that has them.
#pragma once

#include "vosmere/tree/base_node.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::xml {

/// One of the three times alone, in seconds: `StatTime<CNodeStat::kAdded>`.
template <ULONG Which>
void StatTime(CNodeStat& stat, const WChar* value) {
  const LONG time = NumberFromText(value);
  stat.SetStatTime(time, time, time, Which);
}

template <ULONG Which>
void StatTime(CBaseNode& item, const WChar* value) {
  StatTime<Which>(*item.GetNodeStat(), value);
}

/// Of "sx:sync".
inline constexpr Field<CBaseNode> kSyncFields[] = {
    {"id", Text<&CBaseNode::SetUUID>},
    {"version", Number<&CBaseNode::SetVersion>},
    {"deleted", WhenTrue<&CBaseNode::SetAsDeleted>},
};

/// Of "vsm:stat".
inline constexpr Field<CNodeStat> kStatFields[] = {
    {"added", StatTime<CNodeStat::kAdded>},
    {"modified", StatTime<CNodeStat::kModified>},
    {"lastVisited", StatTime<CNodeStat::kLastVisited>},
    {"flag", Number<&CNodeStat::SetFlag>},
    {"unread", WhenTrue<&CNodeStat::MarkAsUnread>},
};

/// Of "stat".
inline constexpr Field<CBaseNode> kStatDateFields[] = {
    {"addDate", StatTime<CNodeStat::kAdded>},
    {"lastModified", StatTime<CNodeStat::kModified>},
    {"lastVisit", StatTime<CNodeStat::kLastVisited>},
};

/// An item is checked in unless it says "false".
inline void CheckedInUnlessFalse(CBaseNode& item, const WChar* value) {
  item.SetCheckedIn(IsNamed(WideView(value), "false") ? 0 : CBaseNode::kCheckedIn);
}

/// Of "vsm:build".
inline constexpr Field<CBaseNode> kBuildFields[] = {
    {"basebuild", Number<&CBaseNode::SetBaseBuild>},
    {"checkedin", CheckedInUnlessFalse},
};

}  // namespace vosmere::xml
