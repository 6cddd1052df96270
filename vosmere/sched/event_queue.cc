#include "vosmere/sched/event_queue.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <utility>

#include "vosmere/base/chain.h"
#include "vosmere/base/internal/no_memory.h"
#include "vosmere/sched/time_event.h"

namespace vosmere {
namespace {

/// Numbers that compare as times do: by seconds, then by milliseconds, whatever their size.
std::int64_t Due(const CTimeEvent& event) {
  LONG seconds;
  int milliseconds;
  event.GetTime(&seconds, &milliseconds);
  return (std::int64_t{seconds} << 32) + (milliseconds - std::int64_t{INT_MIN});
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

// For a heap whose front is the earliest.
bool CTimeEventQueue::Later(const Pending& a, const Pending& b) {
  return a.due != b.due ? a.due > b.due : a.item->order_ > b.item->order_;
}

/// The event's own item or, when that is in a queue, another one; null without memory for it.
CEventItem* CTimeEventQueue::NewItem(CTimeEvent* event) {
  if (!std::atomic_ref(event->item_.queued_).exchange(true, std::memory_order_relaxed))
    return &event->item_;
  return UnlessLost(static_cast<CEventItem*>(nullptr), [&] {
    return further_.emplace_back(OwnedPointer<CEventItem>(new CEventItem(event))).get();
  });
}

bool CTimeEventQueue::Place(CEventItem* item) {
  FollowChanges();
  item->due_ = Due(*item->event);
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

/// False without memory.
bool CTimeEventQueue::Postpone(CEventItem* item) {
  return UnlessNoMemory(false, [&] {
    item->order_ = ordered_++;
    pending_.push_back({item->due_, item});
    std::push_heap(pending_.begin(), pending_.end(), Later);
    return true;
  });
}

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

void CTimeEventQueue::Unlink(CEventItem* item) {
  CEventItem* const next = item->next;
  disorders_ -= IsEarlierThanBefore(item) + IsEarlierThanBefore(next);
  chain::Unlink(head_, item);
  disorders_ += IsEarlierThanBefore(next);
  if (!pending_.empty() && (!head_ || pending_.front().due < head_->due_)) {
    chain::Prepend(head_, pending_.front().item);
    std::pop_heap(pending_.begin(), pending_.end(), Later);
    pending_.pop_back();
  }
}

void CTimeEventQueue::Remove(CEventItem* item) {
  Unlink(item);
  if (item == &item->event->item_)
    std::atomic_ref(item->queued_).store(false, std::memory_order_relaxed);
  else
    std::erase_if(further_, [item](const auto& other) { return other.get() == item; });
}

bool CTimeEventQueue::IsEarlierThanBefore(const CEventItem* item) const {
  return item && item != head_ && item->due_ < item->prev->due_;
}

/// What is pending has its place from before the changes. An event with a further item may have
/// changed without being counted.
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

/// Moves all that is pending to its place in the list, latest first. Of equal ones those in the
/// list were there before.
void CTimeEventQueue::Settle() {
  std::sort(pending_.begin(), pending_.end(), Later);
  CEventItem* place = chain::Last(head_);
  for (const Pending& entry : pending_) {
    while (entry.due < place->due_) place = place->prev;
    chain::InsertAfter(head_, place, entry.item);
  }
  pending_.clear();
}

/// The latest queued event that is the same job.
CEventItem* CTimeEventQueue::FindSame(CTimeEvent* event) {
  Settle();
  for (CEventItem* item = chain::Last(head_); item; item = item->prev) {
    if (item->event->IsTheSameEvent(event)) return item;
    if (item == head_) break;
  }
  return nullptr;
}

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
