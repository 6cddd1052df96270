// CScheduleThread, a thread that runs jobs at given times.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/fwd.h"
#include "vosmere/sched/base_thread.h"

namespace vosmere {

/// A timer service: one thread that sleeps until the earliest of its events is due, then runs the
/// event's job. Start it with CreateThread, end it with StopThread.
///
/// Any thread may insert, replace and take events and call StopThread, before the thread starts,
/// while it runs and after it has ended. Events with equal times fire in the order of their
/// insertion, and an event whose time has passed fires at once. Events are never freed; those left
/// in the queue when the scheduler is destroyed do not fire.
///
/// A job may insert, replace and take events, change and re-insert or free its own event, stop the
/// scheduler and destroy it. An exception that leaves a job is traced and dropped, and the
/// scheduler continues.
///
/// Times are times of day. When the clock is set back, no event fires before the clock reaches its
/// time again. When it is set forward, or the machine was asleep, events that have become due fire
/// within a minute.
class VOSMERE_API CScheduleThread : public CBaseThread {
 public:
  /// Throws std::bad_alloc when memory or the system's event objects run out.
  CScheduleThread();
  /// Stops the thread and waits for it, including a job that is running; a thread that was never
  /// resumed ends at once. In a job, that is on the thread itself, it does not wait, and the thread
  /// ends when the job returns.
  ~CScheduleThread() override;

  /// Inserts the event in time order, under the queue's lock. The scheduler never owns it.
  void InsertTimeEvent(CTimeEvent* event);

  /// The queue's operations of the same name (event_queue.h), under its lock. The caller disposes
  /// of `*replaced`.
  virtual bool InsertOrReplaceEvent(CTimeEvent* event, bool onlyIfEarlier, CTimeEvent** replaced);
  virtual bool InsertAndReplaceEvent(CTimeEvent* event, CTimeEvent** replaced);

  /// Takes the earliest event out of the queue, due or not; null when the queue is empty.
  CTimeEvent* GetHeadEvent();

  /// Ends the loop after the job that is running. Does not wait for it.
  void StopThread();

 protected:
  /// One step: fires the earliest event if it is due, with the queue's lock held; otherwise sets
  /// how long to sleep. Does not touch this object after a job, which may have destroyed it.
  virtual void CheckEvent();
  /// The loop: sleeps until the queue changes, the head may be due or the thread is stopped.
  void DoWork() override;

  /// The scheduler's queue. Hold its lock while using it.
  CTimeEventQueue* GetQueue() const;

  /// The queue-changed flag, for a CheckEvent of a subclass: while it is set, one step follows
  /// another without sleep. It is set under the queue's lock by an insertion that makes a new head,
  /// and at the end of a sleep. After resetting it without that lock, look at the queue again: an
  /// insertion in between has lost its signal.
  void SetQueueChanged();
  void ResetQueueChanged();

  /// The longest sleep before the next step in milliseconds, counted from this call, and from the
  /// beginning of each later step that sets none; -1, the default, means without limit. Only before
  /// the thread runs and on the thread itself.
  void SetWaitTimeout(int milliseconds);
  int GetWaitTimeout() const { return waitTimeout_; }

 private:
  struct State;

  template <class Change>
  bool ChangeQueue(Change change);
  bool SleepUntilDue(const CTimeEvent& event);

  int waitTimeout_ = -1;
  OwnedPointer<State> state_;
};

}  // namespace vosmere
