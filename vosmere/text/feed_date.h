// Converts between feed dates and seconds since 1970, with the rules that stored data relies on.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Converts feed dates to seconds since 1970-01-01 00:00 UTC and back: the RFC 822 date of RSS, the
/// ISO 8601 date of Dublin Core, and a loose "2008-3-1 7:05:09" that some feeds write instead.
///
/// Has no state; one object may be used on several threads at once. Texts are 8-bit and
/// null-terminated. Names are case-sensitive. Nothing is thrown. Numbers are read as by C's atoi:
/// white space and a sign may precede the digits, and numbers beyond 32 bits are saturated.
///
/// Intended: the offset of a zone is added to the time, not subtracted, so "10:00 EST" is read as
/// 05:00 UTC. The dates that the library writes (CBaseTool::GetPubDate) have an inverted sign to
/// match, and so have the dates in stored data. Use ReadDate (date_reader.h) to get the correct
/// instant.
/// Intended: a date before 1970 is read as 0. Seconds are computed with 32 bits; dates after
/// January 2038 wrap, and usually are read as 0, too.
class VOSMERE_API CKQTime {
 public:
  /// Makes local times in this process follow the current time zone, as tzset does. This may take
  /// longer than reading a date, so use one object for many dates.
  CKQTime();
  virtual ~CKQTime();

  /// Reads a date in any of the three forms and stores it in `*seconds`. A text of 19 bytes or more
  /// is read as ISO 8601 when it begins with a digit, otherwise as RFC 822; a text of 12 to 18
  /// bytes that begins with a digit is read as the loose form. Returns false for any other text, a
  /// text that does not have the form, and null.
  /// Intended: the current time is stored when false is returned, so that an item with an
  /// unreadable date is dated now even if the caller ignores the result.
  bool GetTime(const char* text, LONG* seconds) const;

  /// Writes "2008-03-01T10:20:30Z". `text` must have room for 26 bytes, and all are written: the
  /// rest is null bytes. Returns false, with nothing written, for a time before 1970.
  bool GetDCDate(LONG seconds, char* text) const;
  /// The same as UTF-16; writes 21 code units including the terminating null.
  bool GetDCDateW(LONG seconds, WChar* text) const;

  /// Reads an ISO 8601 date from a system string. Returns false, with `*seconds` unchanged, for any
  /// other text, for null, and when memory runs out.
  bool GetEpochTimeFromDCDateBSTR(LONG* seconds, const WChar* text) const;

  /// The seconds of a UTC date and time; `month` counts from 0. Fields out of range carry over into
  /// the next larger field. Computed with 32 bits, wrapping; a negative result is returned as 0.
  LONG Makegmtime(int year, int month, int day, int hour, int minute, int second) const;

  /// The low 32 bits of the seconds since 1970; fractions are dropped.
  static LONG FileTimeToTimeT(const FILETIME* fileTime);
  static void TimeTToFileTime(LONG seconds, FILETIME* fileTime);

 protected:
  // The steps of parsing. `text` is not null and has `length` bytes. On failure they return false
  // and leave the results unchanged.

  /// RFC 822: "Sun, 06 Nov 1994 08:49:37 GMT", at most 255 bytes, years 1970 to 2038. Day 0, a day
  /// that the month does not have, and hour 24 carry over. An unknown zone is read as UTC.
  /// Intended: commas, spaces and colons are interchangeable separators. So a zone with a colon is
  /// cut and read as UTC, and if the seconds are missing, the zone is read in their place ("GMT" as
  /// 0 seconds) and the time is UTC.
  /// Intended: the name of the day is required. An unknown name of a day or month is printed to
  /// standard output.
  bool ParsePubDate(const char* text, LONG* seconds, int length) const;

  /// ISO 8601: "2008-03-01T10:20:30" with any character for the T, then an optional fraction, which
  /// is dropped, and an optional zone. Fields may have fewer digits.
  /// Intended: no field is checked for its range. The zone begins after byte 19, wherever the
  /// seconds end; it is read as UTC when it is unknown or the text has more than 40 bytes.
  bool ParseDCDate(const char* text, LONG* seconds, int length) const;

  /// The loose form: a year of four digits, all other fields of one or two digits, without range
  /// checks. The time is UTC.
  bool ParseInvalidDCDate(const char* text, LONG* seconds, int length) const;

  /// Reads the number before the first `separator` or, when that is '*', the leading digits. Stores
  /// in `*rest` where the text after the separator begins, within `text`; null when nothing
  /// follows. Returns false when there is no separator, and when the field has fewer than
  /// `minDigits` or more than `maxDigits` characters or is negative; in these last cases `*rest` is
  /// stored nevertheless.
  bool GetStringValue(const char* text, int length, char separator, int* value, int minDigits,
                      int maxDigits, char** rest) const;

  /// Stores the offset of a zone: "GMT", "UT", a North American zone such as "EST", a military
  /// letter except J, "+hhmm" or "+hh:mm", at most 24:00; the minutes get the sign of the hours.
  /// Returns false for anything else, lower case and null included.
  bool GetZoneModify(const char* zone, int* hours, int* minutes) const;
};

}  // namespace vosmere
