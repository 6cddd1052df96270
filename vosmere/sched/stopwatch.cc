#include "vosmere/sched/stopwatch.h"

#include <algorithm>
#include <cstdio>

#include "vosmere/base/system_string.h"
#include "vosmere/platform/internal/clock.h"
#include "vosmere/platform/trace.h"
#include "vosmere/text/internal/date_names.h"

namespace vosmere {
namespace {

double Now() {
  const ClockMoment now = ClockNow();
  return now.seconds + now.milliseconds * 0.001;
}

/// What `format(calendar, buffer, size)` prints.
template <class Format>
BSTR NewDate(LONG time, Format format) {
  char date[64] = "";
  CalendarTime calendar;
  const int length = LocalCalendar(time, &calendar) ? format(calendar, date, sizeof date) : 0;
  WChar wide[sizeof date];
  *std::copy_n(date, length, wide) = 0;
  return SysAllocString(wide);
}

}  // namespace

CTimeTest::~CTimeTest() = default;

void CTimeTest::SetStart() {
  start_ = Now();
}

double CTimeTest::GetEndSeconds() const {
  return Now() - start_;
}

double CTimeTest::OnStop(const WChar* label) const {
  const double elapsed = GetEndSeconds();
  Trace("%s  --- Time Spend=%8.3f\n", label, elapsed);
  return elapsed;
}

BSTR CTimeTest::GetShowDate(LONG time) {
  return NewDate(time, [](const CalendarTime& at, char* date, std::size_t size) {
    return std::snprintf(date, size, "%.3s %02d/%02d/%d %02d:%02d", kDayNames[at.weekday].data(),
                         at.day, at.month, at.year, at.hour, at.minute);
  });
}

BSTR CTimeTest::GetShowDate2(LONG time) {
  return NewDate(time, [](const CalendarTime& at, char* date, std::size_t size) {
    return std::snprintf(date, size, "%.3s %02d %d %02d:%02d %.3s",
                         kMonthNames[at.month - 1].data(), at.day, at.year, at.hour, at.minute,
                         kDayNames[at.weekday].data());
  });
}

BSTR CTimeTest::GetShowDateShort(LONG time) {
  return NewDate(time, [](const CalendarTime& at, char* date, std::size_t size) {
    return std::snprintf(date, size, "%.3s %02d %d %02d:%02d", kMonthNames[at.month - 1].data(),
                         at.day, at.year, at.hour, at.minute);
  });
}

}  // namespace vosmere
