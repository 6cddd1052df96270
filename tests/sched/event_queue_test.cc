#include "vosmere/sched/event_queue.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <map>
#include <random>

#include "tests/support/jobs.h"
#include "tests/support/test.h"
#include "vosmere/base/owned_text.h"

namespace vosmere::test::event_queue {

/// The seconds of the events.
std::string List(CTimeEventQueue& queue) {
  return Row(queue.GetHead(),
             [](const CEventItem* item) { return std::to_string(item->event->GetTimeGap(0)); });
}

// Compares all operations with simple walks from the tail, at the limits of the range of times: in
// some rounds times change, in some events are already in a queue, in some memory is short.
TEST(TimeEventQueue, KeepsTheOrderOfAWalkFromTheTail) {
  constexpr LONG kLatest = std::numeric_limits<LONG>::max(), kEarliest = -kLatest - 1;
  constexpr long kPlenty = std::numeric_limits<long>::max();
  enum { kRemove, kOrReplace, kAndReplace, kInsert, kChoices = 5 };
  std::minstd_rand random(1);
  std::deque<Job> jobs;
  for (int round = 0; round < 600; ++round) {
    std::vector<CTimeEvent*> model;
    CTimeEventQueue queue;
    for (int i = 0; i < 150; ++i) {
      const auto more = static_cast<LONG>(random() % 4);
      const LONG time = round % 2 ? kEarliest + more : kLatest - more;
      const int milliseconds =
          random() % 8 ? static_cast<int>(random() % 3) - 1 : (random() % 2 ? -kLatest : kLatest);
      if (round % 2 && !model.empty() && random() % 8 == 0) {
        CTimeEvent& queued = *model[random() % model.size()];
        if (random() % 2)
          queued.SetTime(time, -milliseconds);
        else
          queued = Job(time, -milliseconds);
      }
      const unsigned choice = random() % kChoices;
      Job& job = jobs.size() < 8 || round % 3 || random() % 4
                     ? jobs.emplace_back(time, milliseconds)
                     : jobs.rbegin()[random() % 8];
      job.SetID(choice < kInsert ? 1 + random() % 2 : 0);
      const bool onlyIfEarlier = random() % 2;
      CTimeEvent *replaced = nullptr, *expected = nullptr;
      bool done = true, isHead = false;
      {
        const FailingMemory memory(round % 3 == 1 ? random() % 2 : kPlenty);
        if (choice == kRemove)
          queue.RemoveHead();
        else if (choice == kOrReplace)
          done = queue.InsertOrReplaceEvent(&job, onlyIfEarlier, &replaced, &isHead);
        else if (choice == kAndReplace)
          done = queue.InsertAndReplaceEvent(&job, &replaced, &isHead);
        else
          isHead = queue.InsertEvent(&job);
      }

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

// So many that they are sorted by their bytes, into lists of all lengths, or taken from a heap.
TEST(TimeEventQueue, KeepsTheOrderOfManyEvents) {
  std::minstd_rand random(1);
  std::deque<Job> jobs;
  CTimeEventQueue queue;
  std::multimap<std::pair<LONG, int>, CTimeEvent*> model;
  for (int phase = 0; phase < 500; ++phase) {
    for (auto left = random() % (phase % 9 ? 100 : 2000); left > 0; --left) {
      const auto time = static_cast<LONG>(random() % 3000) - 1500;
      const auto milliseconds = static_cast<int>(random() % 3);
      queue.InsertEvent(&jobs.emplace_back(time, milliseconds));
      model.emplace(std::pair(time, milliseconds), &jobs.back());
    }
    for (auto left = random() % (phase % 5 ? 100 : 2000); left > 0 && !model.empty(); --left) {
      ASSERT_EQ(queue.GetPeepHeadEvent(), model.begin()->second) << phase;
      model.erase(model.begin());
      queue.RemoveHead();
    }
    ASSERT_EQ(queue.GetPeepHeadEvent(), model.empty() ? nullptr : model.begin()->second);
  }
}

TEST(TimeEventQueue, WithoutMemoryAnEventIsQueuedOnlyOnceAndThatIsCounted) {
  CTimeEventQueue queue, other;
  Job job(1, 0);  // is freed when they end
  job.SetID(1);
  CTimeEvent* replaced = &job;
  bool isHead = true;
  {
    const FailingMemory memory(0);
    const unsigned long lostBefore = LostTexts();
    EXPECT_TRUE(queue.InsertEvent(&job));
    EXPECT_TRUE(queue.InsertAndReplaceEvent(&job, &replaced, &isHead));
    queue.RemoveHead();
    EXPECT_TRUE(queue.InsertEvent(&job));
    EXPECT_EQ(LostTexts(), lostBefore);
    job.SetID(0);
    EXPECT_FALSE(queue.InsertEvent(&job));
    EXPECT_FALSE(queue.InsertAndReplaceEvent(&job, &replaced, &isHead));
    EXPECT_FALSE(isHead);
    EXPECT_TRUE(other.InsertEvent(&job));
    EXPECT_EQ(LostTexts() - lostBefore, 3u);
  }
  EXPECT_EQ(replaced, nullptr);
  EXPECT_EQ(List(queue), "1");
  EXPECT_EQ(other.GetHead(), nullptr);
}

}  // namespace vosmere::test::event_queue
