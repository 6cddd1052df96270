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

// Everything against a plain walk from the tail.
TEST(TimeEventQueue, KeepsTheOrderOfAWalkFromTheTail) {
  std::minstd_rand random(1);
  for (int round = 0; round < 60; ++round) {
    std::deque<Job> jobs;
    std::vector<CTimeEvent*> model;
    CTimeEventQueue queue;
    for (int i = 0; i < 150; ++i) {
      const unsigned choice = random() % 12;
      if (choice < 3) {
        queue.RemoveHead();
        if (!model.empty()) model.erase(model.begin());
      } else {
        Job& job = jobs.emplace_back(static_cast<LONG>(random() % 4) - 2, random() % 3);
        job.SetID(choice == 3);
        CTimeEvent *replaced = nullptr, *expected = nullptr;
        const auto same = std::find_if(model.rbegin(), model.rend(), [&](CTimeEvent* queued) {
          return queued->IsTheSameEvent(&job);
        });
        if (same != model.rend()) {
          expected = *same;
          model.erase(same.base() - 1);
        }
        bool isHead;
        if (choice == 3)
          ASSERT_TRUE(queue.InsertAndReplaceEvent(&job, &replaced, &isHead));
        else
          isHead = queue.InsertEvent(&job);
        ASSERT_EQ(replaced, expected);
        auto place = model.end();
        while (place != model.begin() && place[-1]->CompareTime(&job) > 0) --place;
        ASSERT_EQ(isHead, place == model.begin());
        model.insert(place, &job);
      }
      ASSERT_EQ(queue.GetPeepHeadEvent(), model.empty() ? nullptr : model.front());
      if (random() % 8) continue;
      ASSERT_EQ(List(queue).find("BROKEN"), std::string::npos) << List(queue);
      const CEventItem* item = queue.GetHead();
      for (CTimeEvent* const event : model) {
        ASSERT_TRUE(item && item->event == event) << List(queue);
        item = item->next;
      }
      ASSERT_EQ(item, nullptr);
    }
  }
}

TEST(TimeEventQueue, ReplacesOnlyInTheDirectionAskedFor) {
  constexpr struct {
    int time;
    bool onlyIfEarlier, done;
    const char* list;
  } kCases[] = {
      {1, true, true, "1 2 8"},   {5, true, false, "2 5 8"}, {6, true, false, "2 5 8"},
      {1, false, false, "2 5 8"}, {5, false, true, "2 5 8"}, {9, false, true, "2 8 9"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.list);
    Job first(2, 0), same(5, 0), last(8, 0), job(c.time, 0);
    same.SetID(7);
    job.SetID(7);
    CTimeEventQueue queue;
    for (Job* const queued : {&last, &same, &first}) queue.InsertEvent(queued);
    CTimeEvent* replaced = &last;
    bool headChanged = true;
    EXPECT_EQ(queue.InsertOrReplaceEvent(&job, c.onlyIfEarlier, &replaced, &headChanged), c.done);
    EXPECT_EQ(replaced, c.done ? &same : nullptr);
    EXPECT_EQ(headChanged, c.done && c.time == 1);
    EXPECT_EQ(List(queue), c.list);
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

TEST(TimeEventQueue, WithoutMemoryTheFirstEventIsDroppedAndReportedAsTheHead) {
  Job job;
  CTimeEventQueue queue;
  const FailingMemory memory(0);
  EXPECT_TRUE(queue.InsertEvent(&job));
  EXPECT_EQ(queue.GetPeepHeadEvent(), nullptr);
}

TEST(TimeEventQueue, WithoutMemoryAQueueStaysAsItIs) {
  std::deque<Job> jobs;
  CTimeEventQueue queue;
  for (int i = 0; i < 40; ++i) {
    queue.InsertEvent(&jobs.emplace_back(40 - i % 20, 0));
    jobs.back().SetID(1);
    const std::string before = List(queue);
    {
      const FailingMemory memory(0);
      CTimeEvent* replaced = nullptr;
      bool headChanged = true;
      EXPECT_FALSE(queue.InsertEvent(&jobs[0]));
      EXPECT_FALSE(queue.InsertAndReplaceEvent(&jobs[0], &replaced, &headChanged));
      EXPECT_FALSE(replaced || headChanged);
    }
    EXPECT_EQ(List(queue), before);
  }
}

}  // namespace
}  // namespace vosmere::test
