// CTimeEvent: its time, its comparison and its arithmetic.
#include "vosmere/sched/time_event.h"

#include <algorithm>
#include <atomic>
#include <limits>

#include "vosmere/platform/internal/clock.h"

namespace vosmere {
namespace {

/// Times are added in 64 bits, where they cannot overflow, and then limited.
LONG Saturated(std::int64_t value) {
  using Limits = std::numeric_limits<LONG>;
  return static_cast<LONG>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

/// Carries once, as the header promises: a sum of 2000 or more stays at 1000 or more.
void StoreCarried(std::int64_t seconds, std::int64_t milliseconds, LONG* time, int* millitm) {
  if (milliseconds >= 1000) {
    milliseconds -= 1000;
    ++seconds;
  }
  *time = Saturated(seconds);
  *millitm = Saturated(milliseconds);
}

std::atomic<std::uint64_t> changes = 0;

int Compare(LONG a, LONG b) {
  return (a > b) - (a < b);
}

}  // namespace

LONG CTimeEvent::s_lRefTime = 0;
int CTimeEvent::s_iRefMillitm = 0;

CTimeEvent::CTimeEvent() {
  const ClockMoment now = ClockNow();
  time_ = now.seconds;
  milliseconds_ = now.milliseconds;
}

CTimeEvent::CTimeEvent(const CTimeEvent& other)
    : time_(other.time_),
      milliseconds_(other.milliseconds_),
      id_(other.id_),
      eventType_(other.eventType_) {}

CTimeEvent& CTimeEvent::operator=(const CTimeEvent& other) {
  time_ = other.time_;
  milliseconds_ = other.milliseconds_;
  id_ = other.id_;
  eventType_ = other.eventType_;
  NoteChange();
  return *this;
}

CTimeEvent::~CTimeEvent() = default;

bool CTimeEvent::IsTheSameEvent(CTimeEvent*) {
  return false;
}

void CTimeEvent::SetDelayTime(int seconds, int milliseconds) {
  Store(std::int64_t{time_} + seconds, std::int64_t{milliseconds_} + milliseconds);
}

int CTimeEvent::CompareTime(LONG time, int milliseconds) const {
  const int bySeconds = Compare(time_, time);
  return bySeconds ? bySeconds : Compare(milliseconds_, milliseconds);
}

int CTimeEvent::CompareTime(const CTimeEvent* other) const {
  return CompareTime(other->time_, other->milliseconds_);
}

int CTimeEvent::CompareCurrentTime(LONG* secondsLeft, int* millisecondsLeft) const {
  const ClockMoment now = ClockNow();
  if (secondsLeft) *secondsLeft = GetTimeGap(now.seconds);
  if (millisecondsLeft)
    *millisecondsLeft = Saturated(std::int64_t{milliseconds_} - now.milliseconds);
  return CompareTime(now.seconds, now.milliseconds);
}

LONG CTimeEvent::GetTimeGap(LONG time) const {
  return Saturated(std::int64_t{time_} - time);
}

void CTimeEvent::SetTime(LONG time, int milliseconds) {
  Store(time, milliseconds);
}

// The use of the seconds for the milliseconds is intended, see the header.
void CTimeEvent::SetTime(const CTimeEvent* reference, int seconds, int milliseconds) {
  Store(std::int64_t{reference->time_} + seconds, std::int64_t{reference->time_} + milliseconds);
}

void CTimeEvent::SetRefTime(LONG time, int) {
  StoreCarried(time, s_iRefMillitm, &s_lRefTime, &s_iRefMillitm);
}

void CTimeEvent::SetDelayToRefTime(int seconds, int milliseconds) {
  Store(std::int64_t{s_lRefTime} + seconds, std::int64_t{s_iRefMillitm} + milliseconds);
}

void CTimeEvent::Store(std::int64_t seconds, std::int64_t milliseconds) {
  StoreCarried(seconds, milliseconds, &time_, &milliseconds_);
  NoteChange();
}

void CTimeEvent::NoteChange() {
  if (std::atomic_ref(item_.queued_).load(std::memory_order_relaxed))
    changes.fetch_add(1, std::memory_order_relaxed);
}

std::uint64_t CTimeEvent::Changes() {
  return changes.load(std::memory_order_relaxed);
}

}  // namespace vosmere
