#include "vosmere/sched/stopwatch.h"

#include "tests/support/jobs.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "tests/support/traces.h"

namespace vosmere::test::stopwatch {

TEST(TimeTest, MeasuresAndTracesWithItsLabel) {
  const SteppedClock clock(1000, 900);
  const Traces traces;
  CTimeTest watch;
  watch.SetStart();
  clock.Set(1012, 150);
  EXPECT_DOUBLE_EQ(watch.OnStop(W("löad")), 11.25);
  EXPECT_EQ(traces.lines().at(0), "löad  --- Time Spend=  11.250\n");
}

TEST(TimeTest, ShowsDatesInLocalTime) {
  SetTimeZone("CST-8");
  constexpr LONG kTime = 1'204'351'500;  // 2008-03-01 06:05 UTC
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDate(kTime)).utf8(), "Sat 01/03/2008 14:05");
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDate2(kTime)).utf8(), "Mar 01 2008 14:05 Sat");
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDateShort(kTime)).utf8(), "Mar 01 2008 14:05");
  CalendarTime calendar;
  EXPECT_EQ(OwnedBstr(CTimeTest::GetShowDate(-900'000)).utf8(),
            LocalCalendar(-900'000, &calendar) ? "Sun 21/12/1969 22:00" : "");
  SetTimeZone(nullptr);
}

}  // namespace vosmere::test::stopwatch
