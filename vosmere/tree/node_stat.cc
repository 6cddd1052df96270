// The statistics of an item.
#include "vosmere/tree/node_stat.h"

#include "vosmere/platform/internal/clock.h"

namespace vosmere {

CNodeStat::CNodeStat() : added_(ClockSeconds()), modified_(added_), lastVisited_(added_) {}

CNodeStat::~CNodeStat() = default;

void CNodeStat::SetStatTime(LONG added, LONG modified, LONG lastVisited, ULONG mask) {
  if (mask & kAdded) added_ = added;
  if (mask & kModified) modified_ = modified;
  if (mask & kLastVisited) lastVisited_ = lastVisited;
  setTimes_ |= mask & (kAdded | kModified | kLastVisited);
}

void CNodeStat::RestoreTimes(LONG added, LONG modified, LONG lastVisited, ULONG setTimes) {
  setTimes_ = 0;
  SetStatTime(added, modified, lastVisited, setTimes);
  added_ = added;
  modified_ = modified;
  lastVisited_ = lastVisited;
}

void CNodeStat::GetStatTime(LONG* added, LONG* modified, LONG* lastVisited) const {
  if (added) *added = added_;
  if (modified) *modified = modified_;
  if (lastVisited) *lastVisited = lastVisited_;
}

}  // namespace vosmere
