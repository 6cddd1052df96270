#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/fwd.h"
#include "vosmere/sched/base_thread.h"

namespace vosmere {

/// A timer service: one thread that sleeps until the earliest of its events is due, then does the
/// event's job. Start it with CreateThread, end it with StopThread.
///
/// Any thread may insert, replace and take events and call StopThread, before the thread starts,
/// while it runs and after. Equal times fire in the order of their insertion; an event whose time
/// has passed fires at once. Events are never freed; those that are left when the scheduler ends
/// have not fired.
///
/// A job may do anything: insert, replace and take events, re-arm or free its own, stop the
/// scheduler, destroy it. An exception that it lets out is traced and dropped, and the scheduler
/// goes on.
///
/// What is due goes by the time of day. When that is set back, nothing fires before the clock says
/// so again; when it is set forward, or the machine was asleep, what has become due fires within a
/// minute.
class VOSMERE_API CScheduleThread : public CBaseThread {
 public:
  /// Throws std::bad_alloc.
  CScheduleThread();
  /// Stops the thread and waits for it: for a job that runs, and at once for a thread that was
  /// never resumed. On the thread itself, that is in a job, it waits for nothing, and the thread
  /// ends when the job does.
  ~CScheduleThread() override;

  void InsertTimeEvent(CTimeEvent* event);

  /// The queue's operations of the same name (event_queue.h), under its lock.
  virtual bool InsertOrReplaceEvent(CTimeEvent* event, bool onlyIfEarlier, CTimeEvent** replaced);
  virtual bool InsertAndReplaceEvent(CTimeEvent* event, CTimeEvent** replaced);

  /// Takes the earliest event out of the queue, due or not; null when there is none.
  CTimeEvent* GetHeadEvent();

  /// Ends the loop, after the job that runs. Does not wait.
  void StopThread();

 protected:
  /// One step: fires the earliest event if it is due, with the queue's lock held; otherwise sets
  /// how long to sleep. Touches nothing of this object after a job.
  virtual void CheckEvent();
  void DoWork() override;

  CTimeEventQueue* GetQueue() const;

  /// The mark that the queue has changed, for a CheckEvent of a subclass: as long as it stands, one
  /// step follows another without sleep. An insertion that makes a new head sets it, under the
  /// queue's lock, and so does the end of a sleep. Who resets it without that lock looks at the
  /// queue again afterwards.
  void SetQueueChanged();
  void ResetQueueChanged();

  /// Milliseconds to sleep at most before the next step, counted from this call, and from the
  /// beginning of each later step that sets none; -1, as at first, is for ever. Only before the
  /// thread runs and on the thread itself.
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
