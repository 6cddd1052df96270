// Puts the dates together digit by digit; only the zone, which is written once, uses snprintf.
#include "vosmere/text/internal/pub_date_format.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "vosmere/platform/internal/clock.h"
#include "vosmere/text/internal/date_names.h"

namespace vosmere {
namespace {

char* PutShortName(char* at, std::string_view name) {
  return std::copy_n(name.data(), 3, at);
}

char* PutTwoDigits(char* at, int number) {
  at[0] = static_cast<char>('0' + number / 10);
  at[1] = static_cast<char>('0' + number % 10);
  return at + 2;
}

}  // namespace

PubDateFormat::PubDateFormat() {
  const LONG west = ZoneSecondsWest();
  const LONG minutes = std::abs(west) / 60;
  if (west == 0)
    std::snprintf(zone_, sizeof zone_, "GMT");
  else
    std::snprintf(zone_, sizeof zone_, "%c%02d%02d", west > 0 ? '+' : '-', minutes / 60,
                  minutes % 60);
}

int PubDateFormat::Date(LONG seconds, char* date) const {
  CalendarTime time;
  if (!LocalCalendar(seconds, &time)) return 0;
  char* at = PutShortName(date, kDayNames[time.weekday]);
  *at++ = ',';
  *at++ = ' ';
  at = PutTwoDigits(at, time.day);
  *at++ = ' ';
  at = PutShortName(at, kMonthNames[time.month - 1]);
  *at++ = ' ';
  at = PutTwoDigits(at, time.year / 100);
  at = PutTwoDigits(at, time.year % 100);
  *at++ = ' ';
  at = PutTwoDigits(at, time.hour);
  *at++ = ':';
  at = PutTwoDigits(at, time.minute);
  *at++ = ':';
  return static_cast<int>(PutTwoDigits(at, time.second) - date);
}

}  // namespace vosmere
