#include "vosmere/sched/time_event.h"

#include <limits>
#include <utility>

#include "tests/support/jobs.h"
#include "tests/support/test.h"

namespace vosmere::test::time_event {

using Time = std::pair<LONG, int>;

constexpr LONG kMax = std::numeric_limits<LONG>::max();
constexpr LONG kMin = std::numeric_limits<LONG>::min();

Time TimeOf(const CTimeEvent& event) {
  Time time;
  event.GetTime(&time.first, &time.second);
  return time;
}

TEST(TimeEvent, ComparesSecondsThenMilliseconds) {
  const SteppedClock clock(98, 700);
  EXPECT_EQ(TimeOf(Job()), Time(98, 700));
  const Job job(100, 500), later(100, 501);
  EXPECT_EQ(job.CompareTime(99, 999), 1);
  EXPECT_EQ(job.CompareTime(100, 500), 0);
  EXPECT_EQ(job.CompareTime(101, 0), -1);
  EXPECT_EQ(job.CompareTime(&later), -1);
  Time left;
  EXPECT_EQ(job.CompareCurrentTime(&left.first, &left.second), 1);
  EXPECT_EQ(left, Time(2, -200));
}

TEST(TimeEvent, CarriesMillisecondsOnceAndStaysWithin32Bits) {
  Job job(100, 1500);
  EXPECT_EQ(TimeOf(job), Time(101, 500));
  job.SetTime(100, 2500);
  EXPECT_EQ(TimeOf(job), Time(101, 1500));
  job.SetDelayTime(5, 500);
  EXPECT_EQ(TimeOf(job), Time(107, 1000));
  job.SetTime(kMax, 999);
  job.SetDelayTime(1, 1);
  EXPECT_EQ(TimeOf(job), Time(kMax, 0));
  EXPECT_EQ(job.GetTimeGap(-1), kMax);
  job.SetTime(kMin, kMin);
  job.SetDelayTime(-1, -1);
  EXPECT_EQ(TimeOf(job), Time(kMin, kMin));
}

TEST(TimeEvent, SetTimeTakesTheReferencesSecondsForItsMilliseconds) {
  const Job reference(1'700'000'000, 7);
  Job job;
  job.SetTime(&reference, 10, 20);
  EXPECT_EQ(TimeOf(job), Time(1'700'000'011, 1'699'999'020));
}

class ReferenceMoment : public Job {
 public:
  static void SetMilliseconds(int milliseconds) { s_iRefMillitm = milliseconds; }
};

TEST(TimeEvent, SetRefTimeIgnoresItsMilliseconds) {
  Job job;
  CTimeEvent::SetRefTime(500, 900);
  job.SetDelayToRefTime(1, 300);
  EXPECT_EQ(TimeOf(job), Time(501, 300));
  ReferenceMoment::SetMilliseconds(1250);
  CTimeEvent::SetRefTime(500, 0);
  job.SetDelayToRefTime(1, 800);
  EXPECT_EQ(TimeOf(job), Time(503, 50));
  ReferenceMoment::SetMilliseconds(0);
}

}  // namespace vosmere::test::time_event
