#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Feed dates to seconds since 1970-01-01 00:00 UTC, and back: the RFC 822 date of RSS, the ISO
/// 8601 date of Dublin Core, and a loose "2008-3-1 7:05:09" that some feeds write instead.
///
/// No state: one object serves any number of threads at once. Texts are 8-bit and zero-terminated,
/// names are matched case and all, nothing is thrown. Numbers are read as C reads them: white space
/// and a sign may precede the digits, and a number beyond 32 bits is the largest one.
///
/// Intended: zones are added to the clock's reading, so that "10:00 EST" becomes 05:00 UTC. The
/// dates that the library writes (CBaseTool::GetPubDate) have their sign the same way round, and so
/// has what is stored already. ReadDate (date_reader.h) gives the true instant.
/// Intended: a date before 1970 becomes 0. Seconds are computed in 32 bits, and those beyond
/// January 2038 wrap, which mostly makes them 0, too.
class VOSMERE_API CKQTime {
 public:
  /// Makes local times of this process follow the time zone that is set now. That may take longer
  /// than reading dates, for which one object will do.
  CKQTime();
  virtual ~CKQTime();

  /// Reads a date of any of the three forms: from 19 bytes on ISO 8601 when the first is a digit
  /// and RFC 822 else; from 12 to 18 bytes, the first a digit, the loose form. False for anything
  /// else and for null. Intended: false gives the current time, so that an item whose date cannot
  /// be read is dated now by a caller who does not ask.
  bool GetTime(const char* text, LONG* seconds) const;

  /// "2008-03-01T10:20:30Z". All 26 bytes of `text` are written, zeros behind the date. False, with
  /// nothing written, for a time before 1970.
  bool GetDCDate(LONG seconds, char* text) const;
  /// The same in 21 units, the zero included.
  bool GetDCDateW(LONG seconds, WChar* text) const;

  /// Reads an ISO 8601 date, and no other, from a system string. False, with `*seconds` untouched,
  /// for anything else, for null and without memory.
  bool GetEpochTimeFromDCDateBSTR(LONG* seconds, const WChar* text) const;

  /// Seconds of a UTC time; `month` counts from 0. Fields beyond their range carry into the next
  /// ones. 32-bit arithmetic that wraps; a negative result is given as 0.
  LONG Makegmtime(int year, int month, int day, int hour, int minute, int second) const;

  /// The low 32 bits of the seconds; fractions are cut off.
  static LONG FileTimeToTimeT(const FILETIME* fileTime);
  static void TimeTToFileTime(LONG seconds, FILETIME* fileTime);

 protected:
  // The steps of reading. `length` is the length of `text`, which is never null. False leaves the
  // results untouched.

  /// RFC 822: "Sun, 06 Nov 1994 08:49:37 GMT" in at most 255 bytes. Years are 1970 to 2038.
  /// Intended: commas, spaces and colons all separate alike. A zone with a colon is therefore none,
  /// and without seconds the zone stands in their place; both are read as UTC. So is a zone that is
  /// not known.
  /// Intended: the day's name is required, and an unknown name of a day or month is told on
  /// standard output. Day 0, a day that its month does not have, and hour 24 carry over.
  bool ParsePubDate(const char* text, LONG* seconds, int length) const;

  /// ISO 8601: "2008-03-01T10:20:30", any character for the T, then perhaps a fraction (dropped)
  /// and a zone. Fields may be shorter than shown. Intended: no field has a range. What follows
  /// byte 19 is the zone, wherever the seconds end, and it is UTC when it is not known or the text
  /// has more than 40 bytes.
  bool ParseDCDate(const char* text, LONG* seconds, int length) const;

  /// The loose form: a year of four digits, the other fields of one or two. UTC, no ranges.
  bool ParseInvalidDCDate(const char* text, LONG* seconds, int length) const;

  /// Reads the number before the first `separator`, or, with '*', the digits that come first.
  /// `*rest` is what follows the separator, within `text`, or null when nothing does; it is given,
  /// too, when the field has the wrong width or is negative, which both are false.
  bool GetStringValue(const char* text, int length, char separator, int* value, int minDigits,
                      int maxDigits, char** rest) const;

  /// Offsets of "GMT", "UT", the North American zones, one letter, "+hhmm" or "+hh:mm", the latter
  /// with minutes of the hours' sign and at most 24:00. Null, "J" and lower case are no zones.
  bool GetZoneModify(const char* zone, int* hours, int* minutes) const;
};

}  // namespace vosmere
