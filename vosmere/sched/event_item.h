// CEventItem, a cell in the chain of a queue of events.
#pragma once

#include <cstdint>

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// A place in a queue of events: a cell of its chain (base/chain.h). Does not own the event. Every
/// event contains one such item, so that queueing it allocates nothing.
class VOSMERE_API CEventItem {
 public:
  CEventItem* prev = this;
  CEventItem* next = nullptr;
  CTimeEvent* event;

  /// A chain of one item. `queued` is not owned.
  explicit CEventItem(CTimeEvent* queued) : event(queued) {}
  CEventItem(const CEventItem&) = delete;
  CEventItem& operator=(const CEventItem&) = delete;
  virtual ~CEventItem();

 private:
  friend class CTimeEvent;
  friend class CTimeEventQueue;

  std::int64_t due_ = 0;     // the event's time at the last insertion, as one number
  std::uint64_t order_ = 0;  // order of insertion among pending items with equal times
  bool queued_ = false;      // read and written as an atomic
};

}  // namespace vosmere
