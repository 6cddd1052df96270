// CTimeEventQueue: a chain in time order, with a heap for the events that are inserted out of
// order.
#include "vosmere/sched/event_queue.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <iterator>
#include <numeric>
#include <utility>

#include "vosmere/base/chain.h"
#include "vosmere/base/internal/no_memory.h"
#include "vosmere/sched/time_event.h"

namespace vosmere {
namespace {

/// The time of an event as one number. It orders by seconds, then by milliseconds, whatever their
/// values; they are not limited to 0 to 999.
std::int64_t Due(const CTimeEvent& event) {
  LONG seconds;
  int milliseconds;
  event.GetTime(&seconds, &milliseconds);
  return (std::int64_t{seconds} << 32) + (milliseconds - std::int64_t{INT_MIN});
}

/// Sorts entries by due time, keeping equal ones in order: by one byte after the other, leaving out
/// those in which all times agree. `room` has as many entries.
template <class Entries>
void SortBytes(Entries& entries, Entries& room) {
  std::uint64_t differing = 0;
  for (const auto& entry : entries)
    differing |= static_cast<std::uint64_t>(entry.due ^ entries[0].due);
  for (int shift = 0; shift < 64; shift += 8) {
    if ((differing >> shift & 0xFF) == 0) continue;
    const auto byte = [=](const auto& entry) {
      // The sign bit is inverted, because negative times come first.
      return (static_cast<std::uint64_t>(entry.due) ^ std::uint64_t{1} << 63) >> shift & 0xFF;
    };
    std::size_t next[256] = {};
    for (const auto& entry : entries) ++next[byte(entry)];
    std::exclusive_scan(std::begin(next), std::end(next), std::begin(next), std::size_t{0});
    for (const auto& entry : entries) room[next[byte(entry)]++] = entry;
    entries.swap(room);
  }
}

/// Frees an item that is one of `owned`, whose order does not matter.
void Free(Array<OwnedPointer<CEventItem>>& owned, const CEventItem* item) {
  for (OwnedPointer<CEventItem>& at : owned) {
    if (at.get() != item) continue;
    if (&at != &owned.back()) at = std::move(owned.back());
    return owned.pop_back();
  }
}

}  // namespace

CEventItem::~CEventItem() = default;

CTimeEventQueue::~CTimeEventQueue() = default;

bool CTimeEventQueue::InsertEvent(CTimeEvent* event) {
  CEventItem* const item = NewItem(event);
  return item ? Place(item) : !head_;
}

void CTimeEventQueue::RemoveHead() {
  if (head_) Remove(head_);
}

const CEventItem* CTimeEventQueue::GetHead() {
  Settle();
  return head_;
}

bool CTimeEventQueue::InsertOrReplaceEvent(CTimeEvent* event, bool onlyIfEarlier,
                                           CTimeEvent** replaced, bool* headChanged) {
  CEventItem* const match = FindSame(event);
  *replaced = nullptr;
  *headChanged = false;
  if (match && (match->event->CompareTime(event) > 0) != onlyIfEarlier) return false;
  return Replace(match, event, replaced, headChanged);
}

bool CTimeEventQueue::InsertAndReplaceEvent(CTimeEvent* event, CTimeEvent** replaced,
                                            bool* headChanged) {
  return Replace(FindSame(event), event, replaced, headChanged);
}

// Comparison for a heap with the earliest entry at its front. Equal times keep their insertion
// order.
bool CTimeEventQueue::Later(const Pending& a, const Pending& b) {
  return a.due != b.due ? a.due > b.due : a.item->order_ > b.item->order_;
}

/// The event's own item or, when that is in a queue, another one; null when memory runs out. The
/// flag is exchanged atomically, because another queue is guarded by another lock.
CEventItem* CTimeEventQueue::NewItem(CTimeEvent* event) {
  if (!std::atomic_ref(event->item_.queued_).exchange(true, std::memory_order_relaxed))
    return &event->item_;
  return UnlessLost(static_cast<CEventItem*>(nullptr), [&] {
    return further_.push_back(OwnedPointer<CEventItem>(new CEventItem(event))).get();
  });
}

// Returns whether the item became the head. The common cases need no walk: a new head, an append,
// and the heap.
bool CTimeEventQueue::Place(CEventItem* item) {
  FollowChanges();
  item->due_ = Due(*item->event);
  ++size_;
  if (!head_ || (disorders_ == 0 && item->due_ < head_->due_)) {
    chain::Prepend(head_, item);
    return true;
  }
  if (pending_.empty() && item->due_ >= head_->prev->due_) {
    chain::Append(head_, item);
    return false;
  }
  if (disorders_ == 0 && Postpone(item)) return false;
  return PlaceFromTheEnd(item);
}

/// Adds the item to the pending ones. False when memory runs out.
bool CTimeEventQueue::Postpone(CEventItem* item) {
  return UnlessNoMemory(false, [&] {
    item->order_ = ordered_++;
    pending_.push_back({item->due_, item});
    return true;
  });
}

/// Walks the list from its end to the last item that is not later. Needed while the list is out of
/// order, because the heap then does not give that place.
bool CTimeEventQueue::PlaceFromTheEnd(CEventItem* item) {
  Settle();
  CEventItem* place = chain::Last(head_);
  while (item->due_ < place->due_) {
    if (place == head_) {
      chain::Prepend(head_, item);
      return true;
    }
    place = place->prev;
  }
  chain::InsertAfter(head_, place, item);
  return false;
}

/// Takes the item out of the list and keeps disorders_ correct.
void CTimeEventQueue::Unlink(CEventItem* item) {
  CEventItem* const next = item->next;
  disorders_ -= IsEarlierThanBefore(item) + IsEarlierThanBefore(next);
  chain::Unlink(head_, item);
  disorders_ += IsEarlierThanBefore(next);
  --size_;
  if (!pending_.empty()) PromoteEarliest();
}

/// When the earliest pending entry is earlier than the head, it becomes the head, so that reading
/// the head never has to look for it. While there are few pending entries compared with the list, a
/// heap finds the earliest; moving all of them into the list takes less time when there are many.
void CTimeEventQueue::PromoteEarliest() {
  constexpr std::size_t kMany = 64;
  if (pending_.size() >= std::max(kMany, size_ / 8)) return Settle();
  while (heaped_ < pending_.size())
    std::push_heap(pending_.begin(), pending_.begin() + ++heaped_, Later);
  if (head_ && pending_.front().due >= head_->due_) return;
  chain::Prepend(head_, pending_.front().item);
  std::pop_heap(pending_.begin(), pending_.end(), Later);
  pending_.pop_back();
  --heaped_;
}

void CTimeEventQueue::Remove(CEventItem* item) {
  Unlink(item);
  if (item == &item->event->item_)
    std::atomic_ref(item->queued_).store(false, std::memory_order_relaxed);
  else
    Free(further_, item);
}

bool CTimeEventQueue::IsEarlierThanBefore(const CEventItem* item) const {
  return item && item != head_ && item->due_ < item->prev->due_;
}

/// Updates the recorded times when queued events have changed theirs. Pending entries keep the
/// place that their old times give them, so they are moved into the list first. The change counter
/// does not see events with a further item, so those force a walk as well.
void CTimeEventQueue::FollowChanges() {
  const std::uint64_t changes = CTimeEvent::Changes();
  if (std::exchange(changes_, changes) == changes && further_.empty()) return;
  Settle();
  disorders_ = 0;
  for (CEventItem* item = head_; item; item = item->next) {
    item->due_ = Due(*item->event);
    disorders_ += IsEarlierThanBefore(item);
  }
}

/// Moves all pending entries to their places in the list, latest first, in a single walk from the
/// end. Entries that are equal to an item of the list were inserted later and come after it. Only
/// the earliest can be earlier than the list, when the head was just taken out.
void CTimeEventQueue::Settle() {
  if (pending_.empty()) return;
  SortPending();
  const auto first = pending_.begin();
  const bool isNewHead = !head_ || first->due < head_->due_;
  if (isNewHead) chain::Prepend(head_, first->item);
  CEventItem* place = chain::Last(head_);
  for (auto entry = pending_.end(); entry != first + isNewHead;) {
    --entry;
    while (entry->due < place->due_) place = place->prev;
    chain::InsertAfter(head_, place, entry->item);
  }
  pending_.clear();
}

/// Sorts the pending entries, earliest first, and leaves no heap.
void CTimeEventQueue::SortPending() {
  // Only the heap has lost the order of insertion. What follows it was inserted later.
  std::sort(pending_.begin(), pending_.begin() + heaped_,
            [](const Pending& a, const Pending& b) { return Later(b, a); });
  heaped_ = 0;
  constexpr std::size_t kManyForBytes = 512;
  if (pending_.size() >= kManyForBytes && UnlessNoMemory(false, [&] {
        Array<Pending> room;
        room.Append(pending_.begin(), pending_.size());
        SortBytes(pending_, room);
        return true;
      }))
    return;
  std::stable_sort(pending_.begin(), pending_.end(),
                   [](const Pending& a, const Pending& b) { return a.due < b.due; });
}

/// The latest queued event that is the same job; null when there is none.
CEventItem* CTimeEventQueue::FindSame(CTimeEvent* event) {
  Settle();
  for (CEventItem* item = chain::Last(head_); item; item = item->prev) {
    if (item->event->IsTheSameEvent(event)) return item;
    if (item == head_) break;
  }
  return nullptr;
}

/// Inserts the event, in place of `match` unless that is null. The item is obtained first, so that
/// nothing has changed when memory runs out.
bool CTimeEventQueue::Replace(CEventItem* match, CTimeEvent* event, CTimeEvent** replaced,
                              bool* headChanged) {
  CTimeEvent* const old = match ? match->event : nullptr;
  CEventItem* const item = old == event ? match : NewItem(event);
  *replaced = item ? old : nullptr;
  if (!item) return *headChanged = !head_;
  if (item == match)
    Unlink(match);
  else if (match)
    Remove(match);
  *headChanged = Place(item);
  return true;
}

}  // namespace vosmere
