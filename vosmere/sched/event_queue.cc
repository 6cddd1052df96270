#include "vosmere/sched/event_queue.h"

#include <algorithm>
#include <memory>

#include "vosmere/base/chain.h"
#include "vosmere/base/no_memory.h"
#include "vosmere/sched/time_event.h"

namespace vosmere {
namespace {

/// Numbers that compare as times do: by seconds, then by milliseconds, whatever their size.
std::int64_t Due(const CTimeEvent& event) {
  LONG seconds;
  int milliseconds;
  event.GetTime(&seconds, &milliseconds);
  return (std::int64_t{seconds} << 32) + milliseconds;
}

}  // namespace

CEventItem::CEventItem(CTimeEvent* queued) : event(queued), due_(Due(*queued)) {}

CEventItem::~CEventItem() = default;

CTimeEventQueue::~CTimeEventQueue() {
  Settle();
  for (CEventItem* const item : chain::Cells(head_)) delete item;
}

bool CTimeEventQueue::InsertEvent(CTimeEvent* event) {
  CEventItem* const item = NewItem(event);
  return item ? Place(item) : !head_;
}

void CTimeEventQueue::RemoveHead() {
  if (!head_) return;
  const std::unique_ptr<CEventItem> item(head_);
  Unlink(head_);
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

/// An item that can be placed without further memory; null when there is none.
CEventItem* CTimeEventQueue::NewItem(CTimeEvent* event) {
  return NullIfNoMemory([&] {
    if (pending_.size() == pending_.capacity()) pending_.reserve(2 * pending_.capacity() + 16);
    return new CEventItem(event);
  });
}

bool CTimeEventQueue::Place(CEventItem* item) {
  if (!head_ || item->due_ < head_->due_) {
    chain::Prepend(head_, item);
    return true;
  }
  if (pending_.empty() && item->due_ >= head_->prev->due_) {
    chain::Append(head_, item);
  } else {
    item->order_ = ordered_++;
    pending_.push_back({item->due_, item});
    std::push_heap(pending_.begin(), pending_.end(), Later);
  }
  return false;
}

void CTimeEventQueue::Unlink(CEventItem* item) {
  chain::Unlink(head_, item);
  if (!pending_.empty() && (!head_ || pending_.front().due < head_->due_)) {
    chain::Prepend(head_, pending_.front().item);
    std::pop_heap(pending_.begin(), pending_.end(), Later);
    pending_.pop_back();
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

/// The match's item serves the new event, so that replacing never wants for memory.
bool CTimeEventQueue::Replace(CEventItem* match, CTimeEvent* event, CTimeEvent** replaced,
                              bool* headChanged) {
  *replaced = nullptr;
  if (!match) {
    CEventItem* const item = NewItem(event);
    *headChanged = item ? Place(item) : !head_;
    return item || *headChanged;
  }
  *replaced = match->event;
  Unlink(match);
  match->event = event;
  match->due_ = Due(*event);
  *headChanged = Place(match);
  return true;
}

}  // namespace vosmere
