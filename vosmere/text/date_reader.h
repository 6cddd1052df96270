// Dates of feeds and mail as the instants that they mean.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

enum class DateForm {
  kRfc822,      ///< RFC 822, 2822 and 5322: "Sun, 06 Nov 1994 08:49:37 GMT"
  kIso8601,     ///< ISO 8601 and RFC 3339: "1994-11-06T08:49:37Z"
  kLoose,       ///< the same, written carelessly: "1994-11-6 8:49:37"
  kMonthFirst,  ///< asctime of C, and other dates in words: "Sun Nov  6 08:49:37 1994"
};

/// What a date text says.
struct DateReading {
  std::int64_t seconds;  ///< the instant: seconds since 1970-01-01 00:00 UTC, negative before
  int offsetMinutes;     ///< of the zone: positive east of Greenwich, where clocks are ahead of UTC
  bool zoneKnown;        ///< false: the text does not tell the zone, and was read as UTC
  DateForm form;
};

/// Reads a date text of `length` units. False, with `*date` untouched, for a text that is not
/// wholly a date, and for null. Keeps no state; any thread.
///
/// In every form:
/// - Letter case does not count. White space and "(comments)" may stand around the date and before
///   its zone.
/// - Years are 0001 to 9999, and days those that the month has. 24:00:00 is the end of the day.
///   Second 60, the leap second, is the instant of the second after it. Fractions of a second,
///   after "." or ",", are dropped.
/// - What is left out is the smallest: month and day the first, the time midnight.
/// - Zones are "Z", "UT", "UTC", "GMT", "EST", "EDT" and the like of CST, MST and PST, or "+hhmm",
///   "+hh:mm", "+hh", up to 23:59, which may follow one of the names for UTC ("GMT+0100"). Without
///   a zone, and with "-0000", the time is UTC and the zone not known.
///
/// RFC 822: perhaps a day's name, which is not compared with the date; day, month, year; perhaps a
/// time, its seconds or not; perhaps a zone.
/// - Names are English, whole or cut to three letters or more, with a full stop or not. The comma
///   may be missing, one may stand behind the year, "-" may stand between day, month and year, and
///   comments between all parts. Day, hours, minutes and seconds have one digit or two.
/// - As in RFC 5322, years 00 to 49 are 2000 to 2049, 50 to 99 are 1950 to 1999, and those of three
///   digits count from 1900; a military zone (a letter, but not J) and a word of three to five
///   letters that is no zone above are UTC with the zone not known.
///
/// Month first: the same with the month's name before the day, and perhaps a comma behind the day.
/// - The year has four digits. It may also stand behind the time, and the zone then before it:
///   "Sun Nov  6 08:49:37 +0000 1994".
///
/// ISO 8601: a year, a month ("1994-11"), a date, or a date with a time behind "T" or one space, of
/// hours, minutes or seconds, and perhaps a zone.
/// - All fields have their full width. Date and time may each lack their separators, as in
///   "19941106T084937Z". Weeks, days of the year and signed years are not read.
///
/// Loose: the ISO form with its separators, but where fields other than the year have one digit,
/// "/" stands in the date, or several spaces before the time.
VOSMERE_API bool ReadDate(const char* text, std::size_t length, DateReading* date);
VOSMERE_API bool ReadDate(const WChar* text, std::size_t length, DateReading* date);

/// Zero-terminated texts.
inline bool ReadDate(const char* text, DateReading* date) {
  return text && ReadDate(text, std::strlen(text), date);
}
inline bool ReadDate(const WChar* text, DateReading* date) {
  return text && ReadDate(text, WideLength(text), date);
}

}  // namespace vosmere
