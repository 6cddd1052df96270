#pragma once

#include <cstdint>

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// A place in a queue of events: a cell of its chain (base/chain.h). Does not own the event. Every
/// event brings one along.
class VOSMERE_API CEventItem {
 public:
  CEventItem* prev = this;
  CEventItem* next = nullptr;
  CTimeEvent* event;

  explicit CEventItem(CTimeEvent* queued) : event(queued) {}
  CEventItem(const CEventItem&) = delete;
  CEventItem& operator=(const CEventItem&) = delete;
  virtual ~CEventItem();

 private:
  friend class CTimeEvent;
  friend class CTimeEventQueue;

  std::int64_t due_ = 0;     // the event's time at the last insertion, as one number
  std::uint64_t order_ = 0;  // among equal ones that are pending
  bool queued_ = false;      // read and written as an atomic
};

}  // namespace vosmere
