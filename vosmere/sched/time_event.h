// CTimeEvent, a job and the time at which it is due.
#pragma once

#include <cstdint>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/sched/event_item.h"

namespace vosmere {

/// A job and the time at which it is due: seconds since 1970-01-01 00:00 UTC, and milliseconds
/// within that second, normally 0 to 999. A subclass implements the job in DoEvent; CScheduleThread
/// runs it.
///
/// The caller owns the event: neither the queue nor the scheduler ever frees one. It has to live
/// until it has fired, was replaced or was taken out, or the queue has been destroyed. The time of
/// a queued event may be changed only under the queue's lock, which every job holds;
/// CTimeEventQueue describes the effect.
///
/// Where milliseconds are added, a sum of 1000 or more is carried into the seconds once: it loses
/// 1000 and adds one second, however large it is. Results saturate at 32 bits.
class VOSMERE_API CTimeEvent {
 public:
  /// Whether `other`, which is about to be queued, is the same job as this queued event. False by
  /// default. Called with the queue's lock held.
  virtual bool IsTheSameEvent(CTimeEvent* other);

  /// The job. Called on the scheduler's thread with the queue's lock held, so a slow job blocks
  /// every thread that inserts an event. The event has left the queue by then: the job may change
  /// its time and insert it again, or free it.
  virtual void DoEvent() = 0;

  /// Adds to the event's own time.
  virtual void SetDelayTime(int seconds, int milliseconds);

  virtual ~CTimeEvent();

  /// An event that is due now, with id and type 0.
  CTimeEvent();
  /// Copies have the time, id and type, and are not queued. An event that is assigned to keeps its
  /// place in a queue.
  CTimeEvent(const CTimeEvent& other);
  CTimeEvent& operator=(const CTimeEvent& other);

  /// Returns 1 when this event is later, -1 when it is earlier, 0 when the times are equal. Seconds
  /// are compared first, then milliseconds.
  int CompareTime(LONG time, int milliseconds) const;
  int CompareTime(const CTimeEvent* other) const;

  /// Compares with the current time, in the same way. Pointers that are not null receive the time
  /// left until the event, each difference by itself: the milliseconds may be negative.
  int CompareCurrentTime(LONG* secondsLeft, int* millisecondsLeft) const;

  /// Seconds from `time` to this event; negative when the event is earlier.
  LONG GetTimeGap(LONG time) const;

  void GetTime(LONG* time, int* milliseconds) const {
    *time = time_;
    *milliseconds = milliseconds_;
  }
  /// Sets the time, with one carry.
  void SetTime(LONG time, int milliseconds);

  /// Sets the time to `seconds` and `milliseconds` after the reference, whose own milliseconds are
  /// ignored.
  /// Intended: the reference's seconds are also added to the milliseconds. With any real time the
  /// carry fires, so the event ends up a second late with a very large number of milliseconds.
  /// Compare such events with each other only.
  void SetTime(const CTimeEvent* reference, int seconds, int milliseconds);

  /// Sets the reference time for SetDelayToRefTime, which all events of the process share. Not
  /// thread-safe.
  /// Intended: `milliseconds` is ignored. The reference keeps its milliseconds, and when they are
  /// 1000 or more, 1000 of them are carried into its seconds.
  static void SetRefTime(LONG time, int milliseconds);
  /// Sets the event's time to the reference time plus `seconds` and `milliseconds`, with one carry.
  void SetDelayToRefTime(int seconds, int milliseconds);

  int GetID() const { return id_; }
  void SetID(int id) { id_ = id; }
  int GetEventType() const { return eventType_; }

 protected:
  void SetEventType(int eventType) { eventType_ = eventType; }

  static LONG s_lRefTime;
  static int s_iRefMillitm;

 private:
  friend class CTimeEventQueue;

  /// Stores the time, with one carry.
  void Store(std::int64_t seconds, std::int64_t milliseconds);
  /// Counts a change if the event is queued.
  void NoteChange();

  /// How often the times of queued events were changed, counted over all queues. A queue compares
  /// it to find out whether its recorded times are still valid.
  static std::uint64_t Changes();

  LONG time_;
  int milliseconds_;
  int id_ = 0;
  int eventType_ = 0;
  CEventItem item_{this};
};

}  // namespace vosmere
