// Runs work on a thread, and events of its own on a scheduler, with the classes below the layer.
//
// Prints: worked 3 times; earliest in 1 s; event done
#include <future>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

class Counter : public CBaseThread {
 public:
  ~Counter() override { StopAndWait(); }
  int times() {
    const SynchGuard lock(lock_);
    return times_;
  }

 protected:
  void DoWork() override {
    const ParserThread parser;  // only a thread that loads documents needs it
    while (KeepLooping()) {
      const SynchGuard lock(lock_);
      if (++times_ == 3) StopDoWorkLoop();
    }
  }

 private:
  CKQSynch lock_;  // the library's lock
  int times_ = 0;
};

class Ring : public CTimeEvent {
 public:
  std::promise<void> rung;
  void DoEvent() override { rung.set_value(); }
};

int main() {
  Counter counter;
  if (counter.CreateThread(0, 0, nullptr) == 0) return 1;
  counter.WaitForEnd(10000);
  std::cout << "worked " << counter.times() << " times; ";

  Ring first, second;  // each contains its CEventItem, so that queueing allocates nothing
  CTimeEvent::SetRefTime(1000, 0);
  second.SetDelayToRefTime(2, 0);
  first.SetDelayToRefTime(1, 0);
  {
    CTimeEventQueue queue;  // it does not own the events
    const SynchGuard lock(queue);
    queue.InsertEvent(&second);
    queue.InsertEvent(&first);
    std::cout << "earliest in " << queue.GetPeepHeadEvent()->GetTimeGap(1000) << " s; ";
  }

  CTimeTest clock;
  clock.SetStart();
  Ring now;
  CScheduleThread scheduler;
  scheduler.CreateThread(0, 0, nullptr);
  now.SetDelayTime(0, 10);
  scheduler.InsertTimeEvent(&now);
  now.rung.get_future().wait();
  scheduler.StopThread();
  if (clock.GetEndSeconds() < 60) std::cout << "event done\n";
}
