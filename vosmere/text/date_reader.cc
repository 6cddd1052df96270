// A recursive-descent parser for the date forms, one pass over the text, without allocation.
#include "vosmere/text/date_reader.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <type_traits>

#include "vosmere/base/ascii.h"
#include "vosmere/base/internal/always_inline.h"
#include "vosmere/base/internal/number.h"
#include "vosmere/text/internal/date_names.h"
#include "vosmere/text/internal/fixed_fields.h"

namespace vosmere {
namespace {

/// Reads a text from its start to its end. Never looks beyond the end.
template <class Unit>
class Scanner {
 public:
  Scanner(const Unit* text, std::size_t length) : at_(text), end_(text + length) {}

  bool AtEnd() const { return at_ == end_; }
  /// The next code unit; a null at the end, which is part of no date.
  Unit Peek() const { return AtEnd() ? Unit{} : *at_; }
  /// The number of digits that come next, at most `most`.
  std::size_t DigitsAhead(std::size_t most) const {
    std::size_t count = 0;
    while (count < most && at_ + count != end_ && ascii::IsDigit(at_[count])) ++count;
    return count;
  }

  /// Skips the next code unit if it is `c`.
  bool Take(char c) {
    if (Peek() != c) return false;
    ++at_;
    return true;
  }

  /// The same for a letter, case-insensitive.
  bool TakeLetter(char lower) {
    if (ascii::FoldLetter(Peek()) != static_cast<unsigned char>(lower)) return false;
    ++at_;
    return true;
  }

  /// Reads at most `most` digits and returns their number.
  int Number(int most, int* value) {
    int number = 0, digits = 0;
    for (; digits < most && ascii::IsDigit(Peek()); ++digits) number = number * 10 + (*at_++ - '0');
    *value = number;
    return digits;
  }
  std::size_t SkipDigits() {
    const Unit* const start = at_;
    while (ascii::IsDigit(Peek())) ++at_;
    return at_ - start;
  }

  /// Skips white space and comments and returns the number of code units.
  std::size_t SkipBlank() {
    const Unit* const start = at_;
    // Everything that may be skipped is at most '(', so most code units need one comparison.
    while (!AtEnd() && static_cast<std::make_unsigned_t<Unit>>(*at_) <= '(') {
      if (ascii::IsSpace(*at_))
        ++at_;
      else if (*at_ != '(' || !SkipComment())
        break;
    }
    return at_ - start;
  }

  /// Reads a name of which at least three letters are given, and returns its index; -1, with
  /// nothing skipped, when there is none.
  template <std::size_t N>
  int Name(const NameTable<N>& names) {
    const int index = end_ - at_ < 3 ? -1 : names.Find(at_);
    return index >= 0 && SkipName(names[index]) ? index : -1;
  }

  /// Reads the letters that come next, as upper case; empty when there are more than N.
  template <std::size_t N>
  std::string_view Word(char (&room)[N]) {
    std::size_t length = 0;
    for (; !AtEnd() && ascii::IsLetter(*at_); ++at_, ++length) {
      if (length == N) return {};
      room[length] = static_cast<char>(ascii::FoldLetter(*at_) - ('a' - 'A'));
    }
    return {room, length};
  }

 private:
  /// Skips a comment of RFC 5322: comments nest, and a backslash quotes the next character. False,
  /// with nothing skipped, when the comment is not closed.
  bool SkipComment() {
    int depth = 0;
    for (const Unit* at = at_; at != end_; ++at) {
      if (*at == '\\' && at + 1 != end_)
        ++at;
      else if (*at == '(')
        ++depth;
      else if (*at == ')' && --depth == 0) {
        at_ = at + 1;
        return true;
      }
    }
    return false;
  }

  // The first three letters have been compared by the table.
  bool SkipName(std::string_view name) {
    const Unit* at = at_ + 3;
    for (std::size_t i = 3; at != end_ && ascii::IsLetter(*at); ++i, ++at)
      if (i == name.size() || ascii::FoldLetter(*at) != ascii::FoldLetter(name[i])) return false;
    at_ = at;
    Take('.');
    return true;
  }

  const Unit* at_;
  const Unit* end_;
};

struct Zone {
  int offsetMinutes = 0;
  bool known = false;
};

/// False when a field is out of range.
VOSMERE_ALWAYS_INLINE bool ComputeDate(const FixedDate& date, const Zone& zone, DateForm form,
                                       DateReading* result) {
  using namespace std::chrono;
  const year_month_day day{year{date.year}, month(date.month), std::chrono::day(date.day)};
  const bool endOfDay = date.hour == 24 && date.minute == 0 && date.second == 0;
  if (date.year == 0 || !day.ok() || (date.hour > 23 && !endOfDay) || date.minute > 59 ||
      date.second > 60)
    return false;
  const std::int64_t days = sys_days(day).time_since_epoch().count();
  const std::int64_t minutes = (days * 24 + date.hour) * 60 + date.minute - zone.offsetMinutes;
  *result = {minutes * 60 + date.second, zone.offsetMinutes, zone.known, form};
  return true;
}

// The forms that nearly all dates have. What these accept, DateParser reads in the same way, in
// twice the time.

/// Nothing, "Z", a name such as "GMT", "+hhmm" or "+hh:mm", after at most one space. There must be
/// at least eight characters before `end`.
VOSMERE_ALWAYS_INLINE bool ReadUsualZone(const char* at, const char* end, Zone* zone) {
  static constexpr FixedForm kPlain("xxxx0000"), kColon("xxx00:00");
  if (at != end && *at == ' ') ++at;
  const auto size = end - at;
  if (size == 5 || size == 6) {
    FixedForm::Numbers offset;
    const bool colon = size == 6;
    if ((*at != '+' && *at != '-') || !(colon ? kColon : kPlain).Read(end - 8, &offset) ||
        offset[6] > 59)
      return false;
    const int hours = offset[colon ? 3 : 4], minutes = 60 * hours + offset[6];
    *zone = {*at == '+' ? minutes : -minutes, *at == '+' || minutes != 0};
    return hours <= 23;
  }
  const int named = size == 3 ? kZoneNames.FindShort({at, 3}) : -1;
  const bool utc = size == 1 && *at == 'Z';
  *zone = {named < 0 ? 0 : 60 * kZoneHours[named], named >= 0 || utc};
  return zone->known || size == 0;
}

template <DateForm kForm>
bool ReadUsualDate(const char* text, const char* end, DateReading* result) {
  constexpr bool kMail = kForm == DateForm::kRfc822;
  constexpr int kLength = kMail ? FixedDate::kMailLength : FixedDate::kIsoLength;
  FixedDate date;
  Zone zone;
  if (end - text < kLength || !(kMail ? date.ReadMail(text) : date.ReadIso(text))) return false;
  if (kMail) {
    date.month = kMonthNames.Find(text + 8) + 1;
    if (kDayNames.Find(text) < 0) return false;
  } else if (text[10] != 'T' && text[10] != ' ') {
    return false;
  }
  return ReadUsualZone(text + kLength, end, &zone) && ComputeDate(date, zone, kForm, result);
}

/// Parses one text. A missing part is read as 0 rather than reported at once; a text that is not a
/// date then fails in the end, because a field is out of range or something is left over.
template <class Unit>
class DateParser {
 public:
  DateParser(const Unit* text, std::size_t length) : in_(text, length) {}

  bool Read(DateReading* date) {
    in_.SkipBlank();
    // Only the ISO forms begin with a year of four digits.
    mail_ = in_.DigitsAhead(4) < 4;
    if (!(mail_ ? ReadMailDate() : ReadNumericDate())) return false;
    if (timed_ && !ReadClockAndZone()) return false;
    in_.SkipBlank();
    return in_.AtEnd() && !(compact_ && loose_) && Compute(date);
  }

 private:
  bool ReadMailDate() {
    if (ascii::IsLetter(in_.Peek())) {
      if (in_.Name(kDayNames) >= 0) SkipSeparator(',');
      monthFirst_ = ascii::IsLetter(in_.Peek());
      if (monthFirst_) [[unlikely]]
        return ReadMonthFirst();
    }
    ReadPart(&date_.day);
    SkipSeparator('-');
    date_.month = in_.Name(kMonthNames) + 1;
    SkipSeparator('-');
    const int digits = in_.Number(4, &date_.year);
    if (digits < 2) return false;
    // Two and three digits as in RFC 5322, section 4.3.
    if (digits < 4) date_.year += digits == 2 && date_.year < 50 ? 2000 : 1900;
    timed_ = SkipSeparator(',') && !in_.AtEnd();
    return true;
  }

  bool ReadMonthFirst() {
    date_.month = in_.Name(kMonthNames) + 1;
    in_.SkipBlank();
    ReadPart(&date_.day);
    if (!SkipSeparator(',')) return false;
    yearLast_ = in_.DigitsAhead(4) < 4;
    if (!yearLast_) in_.Number(4, &date_.year);
    timed_ = yearLast_ || (SkipSeparator(',') && !in_.AtEnd());
    return true;
  }

  bool ReadNumericDate() {
    // Exactly eight digits are a date without separators.
    compact_ = in_.DigitsAhead(9) == 8;
    in_.Number(4, &date_.year);
    const bool hasDay = compact_ ? ReadCompactDay() : ReadMonthAndDay();
    timed_ = in_.TakeLetter('t') || SkipSpaceBeforeTime();
    return hasDay || !timed_;
  }

  bool SkipSpaceBeforeTime() {
    const std::size_t blanks = in_.SkipBlank();
    loose_ = loose_ || blanks > 1;
    return blanks > 0 && !in_.AtEnd();
  }

  bool ReadCompactDay() { return ReadPart(&date_.month) && ReadPart(&date_.day); }

  /// False when there is no day, which is allowed if there is no time either.
  bool ReadMonthAndDay() {
    loose_ = in_.Peek() == '/';
    const char separator = loose_ ? '/' : '-';
    if (!in_.Take(separator)) return false;
    ReadPart(&date_.month);
    if (!in_.Take(separator)) return false;
    ReadPart(&date_.day);
    return true;
  }

  /// The year of asctime() follows the time; with a zone it may be before or after it.
  bool ReadClockAndZone() {
    if (!ReadClock()) return false;
    ReadLastYear();
    if (!ReadZone()) return false;
    ReadLastYear();
    return true;
  }

  void ReadLastYear() {
    if (!yearLast_ || in_.SkipBlank() == 0 || in_.DigitsAhead(4) < 4) return;
    in_.Number(4, &date_.year);
    yearLast_ = false;
  }

  bool ReadClock() {
    if (!ReadPart(&date_.hour)) return false;
    const bool colon = TakeColon();
    // ISO 8601 allows hours alone; RFC 822 requires the minutes.
    if (!colon && (mail_ || !ascii::IsDigit(in_.Peek()))) return !mail_;
    compact_ = compact_ || !colon;
    if (!ReadPart(&date_.minute)) return false;
    if (colon ? !TakeColon() : !ascii::IsDigit(in_.Peek())) return true;
    return ReadPart(&date_.second) && SkipFraction();
  }

  bool SkipFraction() { return (!in_.Take('.') && !in_.Take(',')) || in_.SkipDigits() > 0; }

  bool ReadZone() {
    in_.SkipBlank();
    if (in_.AtEnd()) return true;
    if (in_.Peek() == '+' || in_.Peek() == '-') return ReadNumericZone();
    char room[5];
    const std::string_view word = in_.Word(room);
    const int named = kZoneNames.FindShort(word);
    zone_.known = named >= 0 || word == "UT" || word == "UTC" || word == "Z";
    if (!zone_.known) return mail_ && (word.size() >= 3 || (word.size() == 1 && word != "J"));
    if (named >= 0) zone_.offsetMinutes = 60 * kZoneHours[named];
    // As in "GMT+0100". No offset may follow "Z".
    const bool utc = zone_.offsetMinutes == 0 && word != "Z";
    return !utc || (in_.Peek() != '+' && in_.Peek() != '-') || ReadNumericZone();
  }

  bool ReadNumericZone() {
    const int sign = in_.Take('+') ? 1 : -1;
    if (sign < 0) in_.Take('-');
    int hours, minutes;
    if (in_.Number(2, &hours) != 2) return false;
    const bool colon = in_.Take(':');
    const int digits = in_.Number(2, &minutes);
    if ((digits != 2 && (digits != 0 || colon)) || hours > 23 || minutes > 59) return false;
    zone_.offsetMinutes = sign * (60 * hours + minutes);
    // "-0000" means that the local offset is unknown (RFC 5322, 3.3; RFC 3339, 4.3).
    zone_.known = sign > 0 || zone_.offsetMinutes != 0;
    return true;
  }

  bool Compute(DateReading* date) const {
    const DateForm form = monthFirst_ ? DateForm::kMonthFirst
                          : mail_     ? DateForm::kRfc822
                          : loose_    ? DateForm::kLoose
                                      : DateForm::kIso8601;
    return ComputeDate(date_, zone_, form, date);
  }

  /// Reads one or two digits; false when there is none.
  bool ReadPart(int* value) {
    const int digits = in_.Number(2, value);
    loose_ = loose_ || digits == 1;
    return digits > 0;
  }
  /// Skips the separator and white space around it; white space alone also separates. False when
  /// there is neither.
  bool SkipSeparator(char separator) {
    const bool blank = in_.SkipBlank() > 0;
    if (!in_.Take(separator)) return blank;
    in_.SkipBlank();
    return true;
  }
  // RFC 822 allows white space and comments around the colons, ISO 8601 does not.
  bool TakeColon() {
    Scanner<Unit> ahead = in_;
    if (mail_) ahead.SkipBlank();
    if (!ahead.Take(':')) return false;
    if (mail_) ahead.SkipBlank();
    in_ = ahead;
    return true;
  }

  Scanner<Unit> in_;
  bool mail_ = false;
  bool compact_ = false;
  bool loose_ = false;
  bool monthFirst_ = false;
  bool yearLast_ = false;
  bool timed_ = false;  // something follows the date
  FixedDate date_ = {.year = 0, .month = 1, .day = 1, .hour = 0, .minute = 0, .second = 0};
  Zone zone_;
};

template <class Unit>
bool ReadText(const Unit* text, std::size_t length, DateReading* date) {
  return text && DateParser<Unit>(text, length).Read(date);
}

}  // namespace

bool ReadDate(const char* text, std::size_t length, DateReading* date) {
  if (text && length > 0 &&
      (ascii::IsDigit(*text) ? ReadUsualDate<DateForm::kIso8601>(text, text + length, date)
                             : ReadUsualDate<DateForm::kRfc822>(text, text + length, date)))
    return true;
  return ReadText(text, length, date);
}

bool ReadDate(const WChar* text, std::size_t length, DateReading* date) {
  return ReadText(text, length, date);
}

}  // namespace vosmere
