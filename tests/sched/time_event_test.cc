#include "vosmere/sched/time_event.h"

#include <limits>
#include <utility>

#include "tests/support/jobs.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "tests/support/traces.h"
#include "vosmere/sched/stopwatch.h"

namespace vosmere::test::time_event {

using Time = std::pair<LONG, int>;

constexpr LONG kMax = std::numeric_limits<LONG>::max();
constexpr LONG kMin = std::numeric_limits<LONG>::min();

Time TimeOf(const CTimeEvent& event) {
  Time time;
  event.GetTime(&time.first, &time.second);
  return time;
}

TEST(TimeEvent, CarriesMillisecondsOnceAndStaysWithin32Bits) {
  const SteppedClock clock(98, 700);
  EXPECT_EQ(TimeOf(Job()), Time(98, 700));
  Time left;
  EXPECT_EQ(Job(100, 500).CompareCurrentTime(&left.first, &left.second), 1);
  EXPECT_EQ(left, Time(2, -200));
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

TEST(TimeEvent, SetRefTimeIgnoresItsMilliseconds) {
  struct ReferenceMoment : Job {
    ~ReferenceMoment() override { s_lRefTime = s_iRefMillitm = 0; }
    void CarryOver(int milliseconds) { s_iRefMillitm = milliseconds; }
  } job;
  job.SetDelayToRefTime(1, 300);
  EXPECT_EQ(TimeOf(job), Time(1, 300));
  CTimeEvent::SetRefTime(500, 900);
  job.SetDelayToRefTime(1, 300);
  EXPECT_EQ(TimeOf(job), Time(501, 300));
  job.CarryOver(1250);
  CTimeEvent::SetRefTime(500, 0);
  job.SetDelayToRefTime(1, 800);
  EXPECT_EQ(TimeOf(job), Time(503, 50));
}

TEST(TimeTest, MeasuresAndTracesWithItsLabel) {
  const SteppedClock clock(1000, 900);
  const Traces traces;
  CTimeTest watch;
  watch.SetStart();
  clock.Set(1012, 150);
  EXPECT_NEAR(watch.OnStop(W("löad")), 11.25, 1e-9);  // 32-bit processors round otherwise
  EXPECT_EQ(traces.lines().at(0), "löad  --- Time Spend=  11.250\n");
}

TEST(TimeTest, ShowsDatesInLocalTime) {
  const Zone zone("CST-8");
  constexpr LONG kTime = 1'204'351'500;  // 2008-03-01 06:05 UTC
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDate(kTime)).utf8(), "Sat 01/03/2008 14:05");
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDate2(kTime)).utf8(), "Mar 01 2008 14:05 Sat");
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDateShort(kTime)).utf8(), "Mar 01 2008 14:05");
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDate(-900'000)).utf8(), "Sun 21/12/1969 22:00");
}

}  // namespace vosmere::test::time_event
