#include "vosmere/sched/event_queue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>
#include <string>
#include <vector>

#include "tests/support/failing_memory.h"
#include "tests/support/jobs.h"
#include "tests/support/row.h"

namespace vosmere::test {
namespace {

/// The seconds of the events.
std::string List(CTimeEventQueue& queue) {
  return Row(queue.GetHead(),
             [](const CEventItem* item) { return std::to_string(item->event->GetTimeGap(0)); });
}

// Everything against plain walks from the tail.
TEST(TimeEventQueue, KeepsTheOrderOfAWalkFromTheTail) {
  enum { kRemove, kOrReplace, kAndReplace, kInsert, kChoices = 8 };
  std::minstd_rand random(1);
  std::deque<Job> jobs;
  for (int round = 0; round < 100; ++round) {
    std::vector<CTimeEvent*> model;
    CTimeEventQueue queue;
    for (int i = 0; i < 150; ++i) {
      const unsigned choice = random() % kChoices;
      Job& job = jobs.emplace_back(static_cast<LONG>(random() % 4) - 2, random() % 3);
      job.SetID(choice < kInsert ? 1 + random() % 2 : 0);
      const bool onlyIfEarlier = random() % 2;
      CTimeEvent *replaced = nullptr, *expected = nullptr;
      bool done = true, isHead = false;
      if (choice == kRemove)
        queue.RemoveHead();
      else if (choice == kOrReplace)
        done = queue.InsertOrReplaceEvent(&job, onlyIfEarlier, &replaced, &isHead);
      else if (choice == kAndReplace)
        done = queue.InsertAndReplaceEvent(&job, &replaced, &isHead);
      else
        isHead = queue.InsertEvent(&job);

      const auto same = std::find_if(model.rbegin(), model.rend(), [&](CTimeEvent* queued) {
        return choice != kRemove && queued->IsTheSameEvent(&job);
      });
      const bool found = same != model.rend();
      const bool later = found && (*same)->CompareTime(&job) == 1;
      const bool kept = choice == kOrReplace && found && (onlyIfEarlier ? !later : later);
      if (choice == kRemove && !model.empty()) model.erase(model.begin());
      if (found && !kept) {
        expected = *same;
        model.erase(same.base() - 1);
      }
      auto place = model.end();
      while (place != model.begin() && place[-1]->CompareTime(&job) > 0) --place;
      const bool inserted = choice != kRemove && !kept;
      ASSERT_EQ(isHead, inserted && place == model.begin());
      if (inserted) model.insert(place, &job);
      ASSERT_EQ(done, !kept);
      ASSERT_EQ(replaced, expected);
      ASSERT_EQ(queue.GetPeepHeadEvent(), model.empty() ? nullptr : model.front());
      if (random() % 8) continue;
      std::vector<CTimeEvent*> list;
      for (auto* item = queue.GetHead(); item; item = item->next) list.push_back(item->event);
      ASSERT_EQ(list, model);
      ASSERT_EQ(List(queue).find("BROKEN"), std::string::npos) << List(queue);
    }
  }
}

TEST(TimeEventQueue, AnEventWhoseTimeIsChangedKeepsItsPlace) {
  Job a(1, 0), b(3, 0), c(5, 0), d(4, 0);
  CTimeEventQueue queue;
  for (Job* const job : {&c, &a, &b}) queue.InsertEvent(job);
  a.SetTime(9, 0);
  c.SetTime(0, 0);
  EXPECT_FALSE(queue.InsertEvent(&d));
  EXPECT_EQ(List(queue), "9 3 4 0");
}

TEST(TimeEventQueue, WithoutMemoryStaysAsItIsAndReportsTheFirstEventAsTheHead) {
  std::deque<Job> jobs;
  CTimeEventQueue queue;
  for (int i = 0; i < 40; ++i) {
    Job& job = jobs.emplace_back(40 - i % 20, 0);
    const std::string before = List(queue);
    {
      const FailingMemory memory(0);
      CTimeEvent* replaced = &job;
      bool headChanged = true;
      EXPECT_EQ(queue.InsertEvent(&job), i == 0);
      EXPECT_EQ(queue.InsertAndReplaceEvent(&job, &replaced, &headChanged), i == 0);
      EXPECT_EQ(headChanged, i == 0);
      EXPECT_EQ(replaced, nullptr);
    }
    EXPECT_EQ(List(queue), before);
    queue.InsertEvent(&job);
  }
}

}  // namespace
}  // namespace vosmere::test
