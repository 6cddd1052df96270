// Formats with snprintf rather than strftime, so that the names are English in every locale.
#include "vosmere/text/display_date.h"

#include <algorithm>
#include <cstdio>

#include "vosmere/platform/internal/clock.h"
#include "vosmere/text/internal/date_names.h"

namespace vosmere {
namespace {

/// A new system string with what `format(calendar, buffer, size)` prints.
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

BSTR DisplayDate::GetShowDate(LONG time) {
  return NewDate(time, [](const CalendarTime& at, char* date, std::size_t size) {
    return std::snprintf(date, size, "%.3s %02d/%02d/%d %02d:%02d", kDayNames[at.weekday].data(),
                         at.day, at.month, at.year, at.hour, at.minute);
  });
}

BSTR DisplayDate::GetShowDate2(LONG time) {
  return NewDate(time, [](const CalendarTime& at, char* date, std::size_t size) {
    return std::snprintf(date, size, "%.3s %02d %d %02d:%02d %.3s",
                         kMonthNames[at.month - 1].data(), at.day, at.year, at.hour, at.minute,
                         kDayNames[at.weekday].data());
  });
}

BSTR DisplayDate::GetShowDateShort(LONG time) {
  return NewDate(time, [](const CalendarTime& at, char* date, std::size_t size) {
    return std::snprintf(date, size, "%.3s %02d %d %02d:%02d", kMonthNames[at.month - 1].data(),
                         at.day, at.year, at.hour, at.minute);
  });
}

}  // namespace vosmere
