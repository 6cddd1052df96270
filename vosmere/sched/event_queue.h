#pragma once

#include <cstdint>
#include <vector>

#include "vosmere/base/export.h"
#include "vosmere/base/lock.h"

namespace vosmere {

class CTimeEvent;

/// A place in the queue: a cell of its chain (base/chain.h). Does not own the event.
class VOSMERE_API CEventItem {
 public:
  CEventItem* prev = this;
  CEventItem* next = nullptr;
  CTimeEvent* event;

  explicit CEventItem(CTimeEvent* queued);
  CEventItem(const CEventItem&) = delete;
  CEventItem& operator=(const CEventItem&) = delete;
  virtual ~CEventItem();

 private:
  friend class CTimeEventQueue;
  std::int64_t due_;         // the event's time when it was queued, as one number
  std::uint64_t order_ = 0;  // among equal ones that are pending
};

/// Events in the order in which they are due; equal times in the order of their insertion. The
/// queue owns its items, never the events.
///
/// Nothing here locks: whoever shares a queue holds its lock around every call.
///
/// An event finds its place by the time it has when it is inserted, compared with the times that
/// the others had when they were. So the list is in time order as long as queued events keep their
/// times; one whose time is changed keeps the place it has.
///
/// Events that come in any order wait in a heap until they are about to become the head or somebody
/// looks at the list, so inserting one costs next to nothing, in time order nothing but the item.
class VOSMERE_API CTimeEventQueue : public CKQSynch {
 public:
  CTimeEventQueue() = default;
  ~CTimeEventQueue() override;

  /// True when the event has become the head. Without memory the event is not queued: false.
  /// Intended: true nevertheless when the queue was empty.
  bool InsertEvent(CTimeEvent* event);

  /// The earliest event, which stays; null when the queue is empty.
  CTimeEvent* GetPeepHeadEvent() const { return head_ ? head_->event : nullptr; }
  /// Takes the earliest event out. Nothing happens to an empty queue.
  void RemoveHead();

  /// The whole list, earliest first; null when empty. The items are the queue's, and the list holds
  /// until the queue is changed. Takes as long as it takes to go over the list once.
  const CEventItem* GetHead();

  /// Inserts the event in place of the latest queued one that is the same job (IsTheSameEvent), or
  /// just inserts it when there is none. With `onlyIfEarlier` it replaces a strictly later event
  /// only, without it an equal or earlier one only; otherwise the queued one stays, and the result
  /// is false. `*replaced` is the event that had to go, now the caller's, or null. `*headChanged`
  /// tells whether the new event became the head; that an old head went does not count. Replacing
  /// needs no memory; when there is none for one more event, the result is false and nothing is
  /// changed, but see InsertEvent for an empty queue. Asks every queued event.
  virtual bool InsertOrReplaceEvent(CTimeEvent* event, bool onlyIfEarlier, CTimeEvent** replaced,
                                    bool* headChanged);
  /// The same, whatever the times.
  virtual bool InsertAndReplaceEvent(CTimeEvent* event, CTimeEvent** replaced, bool* headChanged);

 private:
  struct Pending {
    std::int64_t due;
    CEventItem* item;
  };
  static bool Later(const Pending& a, const Pending& b);

  CEventItem* NewItem(CTimeEvent* event);
  bool Place(CEventItem* item);
  void Unlink(CEventItem* item);
  void Settle();
  CEventItem* FindSame(CTimeEvent* event);
  bool Replace(CEventItem* match, CTimeEvent* event, CTimeEvent** replaced, bool* headChanged);

  CEventItem* head_ = nullptr;
  std::vector<Pending> pending_;  // a heap; none is earlier than the head
  std::uint64_t ordered_ = 0;
};

}  // namespace vosmere
