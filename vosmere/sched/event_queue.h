#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vosmere/base/export.h"
#include "vosmere/base/lock.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/sched/event_item.h"

namespace vosmere {

/// Events in the order in which they are due; equal times in the order of their insertion. The
/// queue never owns the events; they live until they are taken out or the queue ends.
///
/// Nothing here locks: whoever shares a queue holds its lock around every call.
///
/// An event finds its place when it is inserted: behind the last one that is not later, by the
/// times that all have now. So the list is in time order as long as queued events keep their times;
/// one whose time is changed keeps its place, and those behind it wait for it.
///
/// Queueing needs no memory, since an event brings its item along; only one that is in a queue
/// already, or was when that queue ended, needs another. Without memory for that it is not queued,
/// and LostTexts counts it.
///
/// Events that come in any order wait in a heap until they are about to become the head or somebody
/// looks at the list, so inserting one costs next to nothing. When a queued event's time was
/// changed, the next insertion goes over the list once, and as long as the list is out of order
/// each walks from its end. So they do while there is no memory for the heap, and they go over the
/// list while an event is queued twice.
class VOSMERE_API CTimeEventQueue : public CKQSynch {
 public:
  CTimeEventQueue() = default;
  ~CTimeEventQueue() override;

  /// True when the event has become the head.
  /// Intended: true also when the queue was empty and there was no memory.
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
  /// tells whether the new event became the head; that an old head went does not count. Without
  /// memory nothing is changed and the result is false, but see InsertEvent for an empty queue.
  /// Asks every queued event.
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
  bool Postpone(CEventItem* item);
  bool PlaceFromTheEnd(CEventItem* item);
  void Unlink(CEventItem* item);
  void Remove(CEventItem* item);
  bool IsEarlierThanBefore(const CEventItem* item) const;
  void FollowChanges();
  void Settle();
  CEventItem* FindSame(CTimeEvent* event);
  bool Replace(CEventItem* match, CTimeEvent* event, CTimeEvent** replaced, bool* headChanged);

  CEventItem* head_ = nullptr;
  std::vector<Pending> pending_;  // a heap; none is earlier than the head
  std::uint64_t ordered_ = 0;
  std::uint64_t changes_ = 0;  // of queued events' times, at the last insertion
  std::size_t disorders_ = 0;  // items earlier than those before them; with any, none is pending
  std::vector<OwnedPointer<CEventItem>> further_;  // of events whose own item is in a queue already
};

}  // namespace vosmere
