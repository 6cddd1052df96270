// The parsers read what sscanf, strtok and atoi would read, but keep no state and stay within the
// text.
#include "vosmere/text/feed_date.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "vosmere/base/ascii.h"
#include "vosmere/base/internal/number.h"
#include "vosmere/platform/internal/clock.h"
#include "vosmere/text/internal/date_names.h"
#include "vosmere/text/internal/fixed_fields.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere {
namespace {

constexpr int kLongestPubDate = 255;
constexpr int kDCDateWithoutZone = 19;
constexpr int kLongestDCDateWithZone = 40;
constexpr int kShortestLooseDate = 12;
constexpr int kDCDateRoom = 26;
constexpr int kDCDateLength = 20;

constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;

/// Reads numbers and characters as sscanf does for a pattern such as "%4d-%2d".
class PatternInput {
 public:
  explicit PatternInput(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

  /// "%2d": a sign counts towards the width, white space before it does not.
  bool Number(int width, int* value) {
    if (width == 2 && end_ - at_ >= 2 && ascii::IsDigit(at_[0]) && ascii::IsDigit(at_[1])) {
      *value = 10 * (at_[0] - '0') + (at_[1] - '0');  // as nearly always
      at_ += 2;
      return true;
    }
    while (at_ != end_ && ascii::IsSpace(*at_)) ++at_;
    const char* const behind =
        ReadNumber(at_, at_ + std::min<std::ptrdiff_t>(width, end_ - at_), value);
    if (behind) at_ = behind;
    return behind;
  }
  /// An ordinary character of the pattern.
  bool Literal(char c) { return at_ != end_ && *at_++ == c; }
  /// "%c": any character except a null.
  bool Any() { return at_ != end_ && *at_++ != 0; }

 private:
  const char* at_;
  const char* end_;
};

/// The value of a decimal number; 0 when there are no digits.
int NumberOf(std::string_view text) {
  LONG value;
  ReadNumber(text.data(), text.data() + text.size(), &value);
  return value;
}

enum class Kind : char { kOfToken, kSeparator, kEnd };

constexpr std::array<Kind, 256> kKinds = [] {
  std::array<Kind, 256> kinds{};
  kinds[','] = kinds[' '] = kinds[':'] = Kind::kSeparator;
  kinds[0] = Kind::kEnd;
  return kinds;
}();

Kind KindOf(char c) {
  return kKinds[static_cast<unsigned char>(c)];
}

/// Splits a text at commas, spaces and colons. The functions return false when no token is left.
class Tokens {
 public:
  explicit Tokens(const char* text) : at_(text) {}

  /// The next token; empty when none is left.
  std::string_view Next() {
    SkipSeparators();
    const char* const start = at_;
    SkipToken();
    return {start, static_cast<std::size_t>(at_ - start)};
  }

  /// The number at the start of the next token; 0 when it has no digits.
  bool Number(int* value) {
    SkipSeparators();
    if (ascii::IsDigit(*at_)) {
      at_ = ReadNumber<char>(at_, nullptr, value);
      SkipToken();
      return true;
    }
    const std::string_view token = Next();
    *value = NumberOf(token);
    return !token.empty();
  }

  /// The index of a short name. An unknown token is printed to standard output.
  template <std::size_t N>
  bool Name(const NameTable<N>& names, const char* what, int* index) {
    const std::string_view token = Next();
    *index = names.FindShort(token);
    if (*index < 0 && !token.empty())
      std::printf("%s not found %.*s\n", what, static_cast<int>(token.size()), token.data());
    return *index >= 0;
  }

 private:
  void SkipSeparators() {
    while (KindOf(*at_) == Kind::kSeparator) ++at_;
  }
  void SkipToken() {
    while (KindOf(*at_) == Kind::kOfToken) ++at_;
  }

  const char* at_;
};

bool IsBetween(int value, int first, int last) {
  return first <= value && value <= last;
}

/// What is added to the time of day.
struct Offset {
  int hours = 0;
  int minutes = 0;
};

// These return false, with the offset unchanged, for text that is not a zone.

// RFC 822's military zones: A to M without J, then N to Y with the opposite sign.
bool ReadLetterZone(char letter, Offset* offset) {
  if (!IsBetween(letter, 'A', 'Z') || letter == 'J') return false;
  const int place = letter - 'A';
  *offset = {letter < 'J'   ? -1 - place
             : letter < 'N' ? -place
             : letter < 'Z' ? letter - 'N' + 1
                            : 0,
             0};
  return true;
}

bool ReadNumericZone(std::string_view zone, Offset* offset) {
  const int sign = zone[0] == '+' ? 1 : zone[0] == '-' ? -1 : 0;
  PatternInput input(zone.substr(1));
  int hours, minutes;
  if (sign == 0 || !input.Number(2, &hours) || (zone.size() == 6 && !input.Literal(':')) ||
      !input.Number(2, &minutes))
    return false;
  if (!IsBetween(minutes, 0, 59) || !IsBetween(hours, 0, 24) || (hours == 24 && minutes != 0))
    return false;
  *offset = {sign * hours, sign * minutes};
  return true;
}

bool ReadZone(std::string_view zone, Offset* offset) {
  if (zone.size() == 1) return ReadLetterZone(zone[0], offset);
  if (zone.size() == 5 || zone.size() == 6) return ReadNumericZone(zone, offset);
  const int named = kZoneNames.FindShort(zone);
  if (named < 0 && zone != "UT") return false;
  *offset = {named < 0 ? 0 : kZoneHours[named], 0};
  return true;
}

/// The zone of an ISO date: what follows the seconds and their fraction.
std::string_view ZoneOfDCDate(const char* text, int length) {
  if (length <= kDCDateWithoutZone || length > kLongestDCDateWithZone) return {};
  int start = kDCDateWithoutZone;
  if (text[start] == '.' && length > start + 1) {
    ++start;
    while (start < length && ascii::IsDigit(text[start])) ++start;
  }
  return text + start;
}

/// "Sun, 06 Nov 1994 08:49:37" and the end of a token: the form that nearly all dates have. Reads
/// nothing else, and only what ReadPubDate reads in the same way.
bool ReadUsualPubDate(const char* text, int length, Tokens* tokens, FixedDate* date) {
  if (length < FixedDate::kMailLength || !date->ReadMail(text) ||
      KindOf(text[FixedDate::kMailLength]) == Kind::kOfToken || kDayNames.FindShort({text, 3}) < 0)
    return false;
  date->month = kMonthNames.FindShort({text + 8, 3}) + 1;
  if (date->month == 0) return false;
  *tokens = Tokens(text + FixedDate::kMailLength);
  return true;
}

bool ReadPubDate(Tokens* tokens, FixedDate* date) {
  int weekday;
  if (!tokens->Name(kDayNames, "Week", &weekday) || !tokens->Number(&date->day) ||
      !tokens->Name(kMonthNames, "Month", &date->month) || !tokens->Number(&date->year) ||
      !tokens->Number(&date->hour) || !tokens->Number(&date->minute) ||
      !tokens->Number(&date->second))
    return false;
  ++date->month;
  return true;
}

bool ReadDCDate(PatternInput input, FixedDate* date) {
  return input.Number(4, &date->year) && input.Literal('-') && input.Number(2, &date->month) &&
         input.Literal('-') && input.Number(2, &date->day) && input.Any() &&
         input.Number(2, &date->hour) && input.Literal(':') && input.Number(2, &date->minute) &&
         input.Literal(':') && input.Number(2, &date->second);
}

LONG SecondsOf(const CKQTime& calendar, const FixedDate& date, Offset zone) {
  return calendar.Makegmtime(date.year, date.month - 1, date.day, date.hour + zone.hours,
                             date.minute + zone.minutes, date.second);
}

/// False for a time before 1970.
bool FormatDCDate(LONG seconds, char (&text)[kDCDateRoom]) {
  using namespace std::chrono;
  if (seconds < 0) return false;
  const sys_seconds time{std::chrono::seconds(seconds)};
  const year_month_day date(floor<days>(time));
  const hh_mm_ss clock(time - floor<days>(time));
  std::snprintf(text, kDCDateRoom, "%4d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return true;
}

}  // namespace

CKQTime::CKQTime() {
  SetUpZone();
}

CKQTime::~CKQTime() = default;

bool CKQTime::GetTime(const char* text, LONG* seconds) const {
  const int length = text ? static_cast<int>(std::min<std::size_t>(std::strlen(text), INT_MAX)) : 0;
  const bool digit = length > 0 && ascii::IsDigit(*text);
  bool found = false;
  if (length >= kDCDateWithoutZone)
    found = digit ? ParseDCDate(text, seconds, length) : ParsePubDate(text, seconds, length);
  else if (length >= kShortestLooseDate && digit)
    found = ParseInvalidDCDate(text, seconds, length);
  if (!found) *seconds = ClockSeconds();
  return found;
}

bool CKQTime::GetDCDate(LONG seconds, char* text) const {
  char date[kDCDateRoom] = {};
  if (!FormatDCDate(seconds, date)) return false;
  std::copy_n(date, kDCDateRoom, text);
  return true;
}

bool CKQTime::GetDCDateW(LONG seconds, WChar* text) const {
  char date[kDCDateRoom];
  if (!FormatDCDate(seconds, date)) return false;
  std::copy_n(date, kDCDateLength + 1, text);
  return true;
}

bool CKQTime::GetEpochTimeFromDCDateBSTR(LONG* seconds, const WChar* text) const {
  char* bytes = nullptr;
  int length = 0;
  if (!CUnicodeTool::BSTRGetUTF8(text, &bytes, &length)) return false;
  const bool found = ParseDCDate(bytes, seconds, length);
  CUnicodeTool::DeleteBuffer(bytes);
  return found;
}

LONG CKQTime::Makegmtime(int year, int month, int day, int hour, int minute, int second) const {
  static constexpr ULONG kDaysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  // Sums are unsigned because overflow must wrap; quotients are signed because they round toward
  // zero.
  const auto since = [](ULONG y, ULONG start) { return static_cast<LONG>(y - start); };
  ULONG y = static_cast<ULONG>(year) + static_cast<ULONG>(month / 12);
  int m = month % 12;
  if (m < 0) {
    m += 12;
    --y;
  }
  const ULONG leaps = m < 2 ? y - 1 : y;  // the last year whose leap day has passed
  const ULONG days = 365 * (y - 1970) + static_cast<ULONG>(since(leaps, 1968) / 4) -
                     static_cast<ULONG>(since(leaps, 1900) / 100) +
                     static_cast<ULONG>(since(leaps, 1600) / 400) + kDaysBefore[m] +
                     static_cast<ULONG>(day) - 1;
  const ULONG hours = days * 24 + static_cast<ULONG>(hour);
  const ULONG minutes = hours * 60 + static_cast<ULONG>(minute);
  return std::max<LONG>(0, static_cast<LONG>(minutes * 60 + static_cast<ULONG>(second)));
}

LONG CKQTime::FileTimeToTimeT(const FILETIME* fileTime) {
  const std::uint64_t ticks =
      std::uint64_t{fileTime->dwHighDateTime} << 32 | fileTime->dwLowDateTime;
  return static_cast<LONG>(static_cast<ULONG>(ticks / kTicksPerSecond - kSecondsFrom1601To1970));
}

void CKQTime::TimeTToFileTime(LONG seconds, FILETIME* fileTime) {
  const std::int64_t ticks = (seconds + kSecondsFrom1601To1970) * kTicksPerSecond;
  *fileTime = {static_cast<ULONG>(ticks), static_cast<ULONG>(ticks >> 32)};
}

bool CKQTime::ParsePubDate(const char* text, LONG* seconds, int length) const {
  if (length > kLongestPubDate) return false;
  Tokens tokens(text);
  FixedDate date;
  if (!ReadUsualPubDate(text, length, &tokens, &date) && !ReadPubDate(&tokens, &date)) return false;
  if (!IsBetween(date.hour, 0, 24) || !IsBetween(date.day, 0, 31) ||
      !IsBetween(date.minute, 0, 59) || !IsBetween(date.second, 0, 59) ||
      !IsBetween(date.year, 1970, 2038))
    return false;
  Offset zone;
  ReadZone(tokens.Next(), &zone);
  *seconds = SecondsOf(*this, date, zone);
  return true;
}

bool CKQTime::ParseDCDate(const char* text, LONG* seconds, int length) const {
  if (length < kDCDateWithoutZone) return false;
  FixedDate date;
  if ((!date.ReadIso(text) || text[10] == 0) &&
      !ReadDCDate(PatternInput({text, static_cast<std::size_t>(length)}), &date))
    return false;
  Offset zone;
  ReadZone(ZoneOfDCDate(text, length), &zone);
  *seconds = SecondsOf(*this, date, zone);
  return true;
}

bool CKQTime::ParseInvalidDCDate(const char* text, LONG* seconds, int length) const {
  static constexpr struct {
    char separator;
    int minDigits, maxDigits;
  } kFields[] = {{'-', 4, 4}, {'-', 1, 2}, {' ', 1, 2}, {':', 1, 2}, {':', 1, 2}, {'*', 1, 2}};
  int values[6];
  const char* const end = text + length;
  char* rest = const_cast<char*>(text);
  for (int i = 0; i < 6; ++i)
    if (!rest || !GetStringValue(rest, static_cast<int>(end - rest), kFields[i].separator,
                                 &values[i], kFields[i].minDigits, kFields[i].maxDigits, &rest))
      return false;
  *seconds = Makegmtime(values[0], values[1] - 1, values[2], values[3], values[4], values[5]);
  return true;
}

bool CKQTime::GetStringValue(const char* text, int length, char separator, int* value,
                             int minDigits, int maxDigits, char** rest) const {
  const char* const end = text + length;
  const char* const stop = separator == '*' ? std::find_if_not(text, end, ascii::IsDigit<char>)
                                            : std::find(text, end, separator);
  if (stop == end && separator != '*') return false;
  *rest = end - stop > 1 ? const_cast<char*>(stop + 1) : nullptr;
  const auto width = stop - text;
  const int number = NumberOf({text, static_cast<std::size_t>(width)});
  if (width < minDigits || width > maxDigits || number < 0) return false;
  *value = number;
  return true;
}

bool CKQTime::GetZoneModify(const char* zone, int* hours, int* minutes) const {
  Offset offset;
  if (!zone || !ReadZone(zone, &offset)) return false;
  *hours = offset.hours;
  *minutes = offset.minutes;
  return true;
}

}  // namespace vosmere
