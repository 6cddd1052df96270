// Reads the dates of feeds and mail and returns the instants that they mean.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// The standard whose form a date has.
enum class DateForm {
  kRfc822,      ///< RFC 822, 2822 and 5322: "Sun, 06 Nov 1994 08:49:37 GMT"
  kIso8601,     ///< ISO 8601 and RFC 3339: "1994-11-06T08:49:37Z"
  kLoose,       ///< ISO 8601, but not exactly: "1994-11-6 8:49:37"
  kMonthFirst,  ///< asctime() of C and similar: "Sun Nov  6 08:49:37 1994"
};

/// The result of ReadDate.
struct DateReading {
  std::int64_t seconds;  ///< seconds since 1970-01-01 00:00 UTC, negative before
  int offsetMinutes;     ///< of the zone: positive east of Greenwich, where clocks are ahead of UTC
  bool zoneKnown;        ///< false: the text has no known zone, and its time was read as UTC
  DateForm form;
};

/// Parses a date text of `length` code units, as bytes or as UTF-16. Returns false, with `*date`
/// unchanged, when any part of the text does not belong to a date, and for null. Has no state; may
/// be called on any thread.
///
/// All forms:
/// - Case-insensitive (ASCII). White space and "(comments)" are allowed around the date and before
///   its zone.
/// - Years are 0001 to 9999; the day must exist in the month. 24:00:00 is the end of the day.
///   Second 60, the leap second, is the same instant as the second after it. A fraction of a
///   second, after "." or ",", is dropped.
/// - A missing month or day is the first, a missing time is midnight.
/// - Zones are "Z", "UT", "UTC", "GMT", "EST", "EDT", the same for CST, MST and PST, or an offset
///   up to 23:59, written "+hhmm", "+hh:mm" or "+hh". An offset may also follow one of the names
///   for UTC other than "Z" ("GMT+0100"). Without a zone, and with "-0000", the time is read as UTC
///   and zoneKnown is false.
///
/// RFC 822: an optional name of the day, which is not compared with the date; day, month and year;
/// an optional time with or without seconds; an optional zone.
/// - Names are English, complete or abbreviated to three letters or more, with or without a full
///   stop. The comma after the day's name is optional, a comma may follow the year, day, month and
///   year may be separated by "-", and comments are allowed between all parts. Day, hours, minutes
///   and seconds have one or two digits.
/// - As in RFC 5322, years 00 to 49 are 2000 to 2049, years 50 to 99 are 1950 to 1999, and years of
///   three digits are counted from 1900. A military zone (one letter, except J) and any other word
///   of three to five letters is read as UTC, with zoneKnown false.
///
/// Month first: the same with the month before the day and an optional comma after the day.
/// - The year has four digits. It may also follow the time, with the zone before or after it:
///   "Sun Nov  6 08:49:37 +0000 1994".
///
/// ISO 8601: a year, a month ("1994-11") or a day, or a day and, after "T" or one space, a time
/// down to hours, minutes or seconds with an optional zone.
/// - All fields have their full width. The separators may be missing in the date, in the time, or
///   in both, as in "19941106T084937Z". Week dates, ordinal dates and years with a sign are not
///   supported.
///
/// Loose: the ISO form with separators, but with a field other than the year of one digit, with "/"
/// in the date, or with several spaces before the time.
VOSMERE_API bool ReadDate(const char* text, std::size_t length, DateReading* date);
VOSMERE_API bool ReadDate(const WChar* text, std::size_t length, DateReading* date);

/// The same for null-terminated texts.
inline bool ReadDate(const char* text, DateReading* date) {
  return text && ReadDate(text, std::strlen(text), date);
}
inline bool ReadDate(const WChar* text, DateReading* date) {
  return text && ReadDate(text, WideLength(text), date);
}

}  // namespace vosmere
