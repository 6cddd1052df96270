// The attributes of items that several documents share.
#pragma once

#include <string>

#include "vosmere/tree/base_node.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::xml {

/// Sets one of the three times, in seconds: `StatTime<CNodeStat::kAdded>`.
template <ULONG Which>
void StatTime(CNodeStat& stat, const WChar* value) {
  const LONG time = NumberFromText(value);
  stat.SetStatTime(time, time, time, Which);
}

template <ULONG Which>
void StatTime(CBaseNode& item, const WChar* value) {
  StatTime<Which>(*item.GetNodeStat(), value);
}

/// The attributes of "sx:sync".
inline constexpr Field<CBaseNode> kSyncFields[] = {
    {"id", Text<&CBaseNode::SetUUID>},
    {"version", Number<&CBaseNode::SetVersion>},
    {"deleted", WhenTrue<&CBaseNode::SetAsDeleted>},
};

/// The attributes of "vsm:stat".
inline constexpr Field<CNodeStat> kStatFields[] = {
    {"added", StatTime<CNodeStat::kAdded>, FitsNumber},
    {"modified", StatTime<CNodeStat::kModified>, FitsNumber},
    {"lastVisited", StatTime<CNodeStat::kLastVisited>, FitsNumber},
    {"flag", Number<&CNodeStat::SetFlag>},
    {"unread", WhenTrue<&CNodeStat::MarkAsUnread>},
};

/// The attributes of "stat".
inline constexpr Field<CBaseNode> kStatDateFields[] = {
    {"addDate", StatTime<CNodeStat::kAdded>, FitsNumber},
    {"lastModified", StatTime<CNodeStat::kModified>, FitsNumber},
    {"lastVisit", StatTime<CNodeStat::kLastVisited>, FitsNumber},
};

/// Every value but "false" means checked in.
inline void CheckedInUnlessFalse(CBaseNode& item, const WChar* value) {
  item.SetCheckedIn(IsNamed(WideView(value), "false") ? 0 : CBaseNode::kCheckedIn);
}

/// The attributes of "vsm:build".
inline constexpr Field<CBaseNode> kBuildFields[] = {
    {"basebuild", Number<&CBaseNode::SetBaseBuild>},
    {"checkedin", CheckedInUnlessFalse, FitsTruth},
};

/// Reports the times that the document does not state, which are therefore those of the clock.
inline void SayTimes(Report& report, const CNodeStat& stat) {
  constexpr const char* kTimes[] = {"added", "modified", "lastVisited"};  // in the order of bits
  std::string unsaid;
  for (int i = 0; i < 3; ++i)
    if (!(stat.GetSetTimes() >> i & 1))
      unsaid += (unsaid.empty() ? "" : ", ") + std::string(kTimes[i]);
  if (unsaid.empty()) return;
  const std::string what = "no time in the document (" + unsaid + "): a copy gets the current time";
  report.Lose(LossKind::kUnsaid, what.c_str());
}

}  // namespace vosmere::xml
