#pragma once

#include <cstdint>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/sched/event_item.h"

namespace vosmere {

/// A job and the moment at which it is due: seconds since 1970-01-01 00:00 UTC, and milliseconds
/// within that second, normally 0 to 999. A subclass says in DoEvent what the job is;
/// CScheduleThread runs it.
///
/// An event belongs to its owner: neither queue nor scheduler ever frees one, and it has to live
/// until it has fired, was replaced or was taken out, or the queue has ended. The time of a queued
/// event is changed under the queue's lock only, which every job holds; CTimeEventQueue says what
/// becomes of it.
///
/// Where milliseconds are added up, 1000 or more are carried over into the seconds once: 1000 of
/// them, however many there are. Sums and differences that leave 32 bits stop at the last value
/// within.
class VOSMERE_API CTimeEvent {
 public:
  /// Whether `other`, which is about to be queued, stands for the same job as this queued event.
  /// Never, unless a subclass knows better. Called with the queue's lock held.
  virtual bool IsTheSameEvent(CTimeEvent* other);

  /// The job. Called on the scheduler's thread with the queue's lock held, so that a slow one holds
  /// up everybody who inserts. The event is out of the queue by then: the job may change its time
  /// and insert it again, or free it.
  virtual void DoEvent() = 0;

  /// Moves the event's own time on.
  virtual void SetDelayTime(int seconds, int milliseconds);

  virtual ~CTimeEvent();

  /// Due now; id and type 0.
  CTimeEvent();
  CTimeEvent(const CTimeEvent& other);
  CTimeEvent& operator=(const CTimeEvent& other);

  /// 1 when this event is later, -1 when it is earlier, 0 when equal.
  int CompareTime(LONG time, int milliseconds) const;
  int CompareTime(const CTimeEvent* other) const;

  /// The same with the clock. What is left until the event goes to the pointers that are not null,
  /// each difference for itself: the milliseconds may be negative.
  int CompareCurrentTime(LONG* secondsLeft, int* millisecondsLeft) const;

  /// Seconds from `time` to this event.
  LONG GetTimeGap(LONG time) const;

  void GetTime(LONG* time, int* milliseconds) const {
    *time = time_;
    *milliseconds = milliseconds_;
  }
  void SetTime(LONG time, int milliseconds);

  /// So long after the reference, whose milliseconds do not count.
  /// Intended: the reference's seconds also start the sum of milliseconds, so with any real time
  /// the carry fires, and the event comes to stand a second late with a large number of
  /// milliseconds. Owners that use this compare such events with each other only.
  void SetTime(const CTimeEvent* reference, int seconds, int milliseconds);

  /// Sets the moment that SetDelayToRefTime counts from, one for all events of the process. Nothing
  /// guards it.
  /// Intended: the milliseconds are ignored; those of the reference stay as they are, and when they
  /// are 1000 or more, 1000 of them are carried over into its seconds.
  static void SetRefTime(LONG time, int milliseconds);
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

  /// Carries once.
  void Store(std::int64_t seconds, std::int64_t milliseconds);
  void NoteChange();

  /// How often the times of queued events were changed, those of all queues together.
  static std::uint64_t Changes();

  LONG time_;
  int milliseconds_;
  int id_ = 0;
  int eventType_ = 0;
  CEventItem item_{this};
};

}  // namespace vosmere
