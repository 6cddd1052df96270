// CTimeEventQueue, the events of a scheduler in the order in which they are due.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/array.h"
#include "vosmere/base/export.h"
#include "vosmere/base/lock.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/sched/event_item.h"

namespace vosmere {

/// Events in the order in which they are due; equal times in the order of their insertion. The
/// queue never owns the events, which have to live until they are taken out or the queue is
/// destroyed.
///
/// Not thread-safe by itself: callers that share a queue hold its lock (CKQSynch) around every
/// call.
///
/// An event is placed when it is inserted: after the last one that is not later, by the times that
/// all events have at that moment. The list is in time order as long as queued events keep their
/// times. An event whose time is changed while it is queued keeps its place, and the events after
/// it wait for it.
///
/// Queueing allocates nothing, because an event contains its item. Only an event that is in a queue
/// already, or was when that queue was destroyed, needs a further item. When memory for that runs
/// out, the event is not queued and LostTexts counts it.
///
/// Performance: events that are inserted out of order wait beside the list until an event is taken
/// out or the list is read; then a heap gives the earliest, or all of them are sorted into the list
/// when they are many. So inserting and taking out one takes logarithmic time on average. After the
/// time of a queued event has changed, the next insertion walks the list once, and while the list
/// is out of order every insertion walks it from the end. Insertions also walk from the end when
/// memory for the heap runs out, and walk the whole list while an event is queued twice.
class VOSMERE_API CTimeEventQueue : public CKQSynch {
 public:
  CTimeEventQueue() = default;
  ~CTimeEventQueue() override;

  /// Inserts the event in time order. Returns true when it has become the head.
  /// Intended: also true when the queue was empty and memory for the item ran out.
  bool InsertEvent(CTimeEvent* event);

  /// The earliest event, which stays in the queue; null when the queue is empty.
  CTimeEvent* GetPeepHeadEvent() const { return head_ ? head_->event : nullptr; }
  /// Takes the earliest event out. Does nothing when the queue is empty.
  void RemoveHead();

  /// The whole list, earliest first; null when the queue is empty. The queue owns the items, and
  /// the list is valid until the queue is changed. Takes linear time.
  const CEventItem* GetHead();

  /// Replaces the latest queued event that is the same job (CTimeEvent::IsTheSameEvent), or inserts
  /// the event when there is none. With `onlyIfEarlier` only a strictly later queued event is
  /// replaced, without it only an equal or earlier one. Otherwise the queue is unchanged and the
  /// result is false.
  ///
  /// `*replaced` receives the event that was taken out, which is now the caller's to dispose of, or
  /// null. It is `event` itself when that was the match; it is then queued at its new time.
  /// `*headChanged` receives whether the new event became the head; taking out an old head does not
  /// count.
  ///
  /// When memory runs out, nothing changes and the result is false, except for an empty queue (see
  /// InsertEvent). IsTheSameEvent is called for the queued events, latest first, until one matches.
  virtual bool InsertOrReplaceEvent(CTimeEvent* event, bool onlyIfEarlier, CTimeEvent** replaced,
                                    bool* headChanged);
  /// Like InsertOrReplaceEvent, but replaces the match whatever the times are.
  virtual bool InsertAndReplaceEvent(CTimeEvent* event, CTimeEvent** replaced, bool* headChanged);

 private:
  /// A queued event that has no place in the list yet.
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
  void PromoteEarliest();
  void Settle();
  void SortPending();
  CEventItem* FindSame(CTimeEvent* event);
  bool Replace(CEventItem* match, CTimeEvent* event, CTimeEvent** replaced, bool* headChanged);

  CEventItem* head_ = nullptr;
  Array<Pending> pending_;     // no entry is earlier than the head
  std::size_t heaped_ = 0;     // entries of pending_ that are a heap; the others are as inserted
  std::size_t size_ = 0;       // of the list and pending_
  std::uint64_t ordered_ = 0;  // the order_ of the next pending item
  std::uint64_t changes_ = 0;  // CTimeEvent::s_changes at the last insertion
  std::size_t disorders_ = 0;  // items earlier than their predecessor; if any, pending_ is empty
  Array<OwnedPointer<CEventItem>> further_;  // for events whose own item is in a queue already
};

}  // namespace vosmere
