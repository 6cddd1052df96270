// The two readers of dates, CKQTime and ReadDate, and what else CKQTime does.
#include <limits>
#include <random>
#include <sstream>

#include "tests/support/jobs.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "vosmere/base/ascii.h"
#include "vosmere/text/date_reader.h"
#include "vosmere/text/feed_date.h"
#include "vosmere/text/toolbox.h"

namespace vosmere::test::dates {

constexpr int kMax = std::numeric_limits<int>::max(), kMin = std::numeric_limits<int>::min();

/// The seconds as text; "-" where GetTime gives the current time.
std::string TimeOf(const char* text) {
  const SteppedClock clock(kMin);
  LONG seconds = 5;
  const bool found = CKQTime().GetTime(text, &seconds);
  EXPECT_EQ(found, seconds != kMin) << text;
  return found ? std::to_string(seconds) : "-";
}

std::string Told(bool found, const DateReading& date) {
  constexpr const char* kForms[] = {"mail", "iso", "loose", "month"};
  if (!found) return date.seconds == 5 ? "-" : "touched";
  return std::to_string(date.seconds) + ' ' +
         (date.zoneKnown ? std::to_string(date.offsetMinutes) : "?") + ' ' +
         kForms[static_cast<int>(date.form)];
}

/// Reads the date as bytes and as wide text, which must agree.
std::string Read(const std::string& text) {
  DateReading date = {5, 0, false, DateForm::kLoose}, same = date;
  const std::u16string wide(text.begin(), text.end());
  const std::string told = Told(ReadDate(text.data(), text.size(), &date), date);
  EXPECT_EQ(Told(ReadDate(W(wide).get(), wide.size(), &same), same), told) << text;
  return told;
}

TEST(Dates, AreReadByBothReaders) {
  testing::internal::CaptureStdout();
  for (const auto& row : TestTable("dates.txt")) {
    EXPECT_THAT(row, ElementsAre(row[0], TimeOf(row[0].c_str()), Read(row[0])));
    DateReading date = {5, 0, false, DateForm::kLoose};
    for (std::size_t size = 0; size < row[0].size(); date.seconds = 5, ++size)
      EXPECT_EQ(Told(ReadDate(row[0].data(), size, &date), date), Read(row[0].substr(0, size)));
  }
  testing::internal::GetCapturedStdout();
}

/// The usual forms are read at once. A space that changes nothing, or wide units, prevent that.
TEST(Dates, AreReadAtOnceAsByTheCharacter) {
  const std::string usual[] = {"Sun, 06 Nov 1994 08:49:37 GMT", "Thu, 29 Feb 1996 23:59:60 +0130",
                               "1994-11-06T08:49:37Z", "1996-02-29 24:00:00-01:30"};
  const std::string_view odd(" 0123456789:-+,./TZtnx(\x80");
  std::minstd_rand random(1);
  testing::internal::CaptureStdout();
  for (int round = 0; round < 20'000 && !HasFailure(); ++round) {
    std::string text = usual[random() % 4];
    for (auto left = random() % 4; left > 0; --left)
      text[random() % text.size()] = odd[random() % odd.size()];
    if (random() % 4 == 0) text.resize(random() % text.size());
    Read(text);
    const bool iso = ascii::IsDigit(text[0]);
    if (text.size() < (iso ? 19 : 25) || (iso && text.find(' ') < 10)) continue;
    if (iso) text.replace(19, text.npos, "?");  // the place of the zone counts
    const std::size_t place = iso ? 11 : text.find(' ') + 1;
    EXPECT_EQ(TimeOf(text.c_str()), TimeOf(std::string(text).insert(place, 1, ' ').c_str()))
        << text;
  }
  testing::internal::GetCapturedStdout();
}

TEST(Dates, AreAsciiButInCommentsAndWhole) {
  EXPECT_EQ(Read("\r\n  Sun., 6 Nove. 94 08:49:37.25 +0000 (noon? \\) (no))\n"),
            "784111777 0 mail");
  for (const std::string& text : {std::string("1994\0", 5), "1994" + std::string(1000, '0'),
                                  "06 Nov 1994" + std::string(100000, '(')})
    EXPECT_EQ(Read(text), "-");
  DateReading date;
  EXPECT_FALSE(ReadDate(W(u"\u0661\u0669\u0669\u0664"), &date)) << "Arabic digits";
  EXPECT_FALSE(ReadDate(W(u"6 \u014Eov 1994"), &date)) << "the low byte is an N";
  EXPECT_TRUE(ReadDate(W(u"6 Nov 1994 (\u014E)"), &date));
  EXPECT_FALSE(ReadDate(static_cast<const char*>(nullptr), &date));
  EXPECT_FALSE(ReadDate(static_cast<const WChar*>(nullptr), &date));
  EXPECT_EQ(TimeOf(nullptr), "-");
}

/// Checks what CKQTime makes of a time of this day.
void ExpectDay(int year, int month, int day, LONG seconds) {
  EXPECT_EQ(CKQTime().Makegmtime(year, month - 1, day, 1, 1, 1), seconds + 3661);
  EXPECT_EQ(CKQTime().Makegmtime(year + 1, month - 13, day, 2, -59, 1), seconds + 3661);
  char text[26];
  ASSERT_TRUE(CKQTime().GetDCDate(seconds, text));
  EXPECT_EQ(TimeOf(text), std::to_string(seconds));
}

TEST(Dates, FollowTheCalendarThroughEveryMonth) {
  std::int64_t days = -719162;
  for (int year = 1; year <= 9999 && !HasFailure(); ++year) {
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    const int lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; days += lengths[month++ - 1])
      for (const int day : {1, lengths[month - 1], lengths[month - 1] + 1}) {
        char text[32];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
        DateReading date;
        const std::int64_t seconds = (days + day - 1) * 86400;
        ASSERT_EQ(ReadDate(text, &date), day <= lengths[month - 1]) << text;
        if (day > lengths[month - 1]) continue;
        ASSERT_EQ(date.seconds, seconds) << text;
        if (year >= 1970 && year < 2038) ExpectDay(year, month, day, static_cast<LONG>(seconds));
      }
  }
}

/// The protected steps, as text.
struct Steps : CKQTime {
  std::string Zone(const char* zone) const {
    int hours = 77, minutes = 7;
    const bool found = GetZoneModify(zone, &hours, &minutes);
    EXPECT_EQ(found, hours != 77);
    return found ? std::to_string(hours) + " " + std::to_string(minutes) : "none";
  }
  std::string Field(const std::string& text, char separator, int maxDigits) const {
    int value = -7;
    char unchanged[] = "unchanged", *rest = unchanged;
    GetStringValue(text.c_str(), static_cast<int>(text.size()), separator, &value, 1, maxDigits,
                   &rest);
    return std::to_string(value) + " " + (rest ? rest : "null");
  }
};

TEST(KQTime, ZonesAreExact) {
  const char* const cases[][2] = {
      {"0 0", "GMT UT Z"},
      {"-8 0", "PST"},
      {"-4 0", "EDT"},
      {"-1 0", "A"},
      {"-9 0", "I"},
      {"-10 0", "K"},
      {"-12 0", "M"},
      {"1 0", "N"},
      {"12 0", "Y"},
      {"24 0", "+2400"},
      {"-9 -59", "-0959"},
      {"5 30", "+05:30"},
      {"none", "J z gmt UTC +01 0100 +2401 +0060 *0100 +0-30 +-130 +1:00 +010000"}};
  for (const auto& [offset, names] : cases) {
    std::istringstream zones(names);
    for (std::string zone; zones >> zone;) EXPECT_EQ(Steps().Zone(zone.c_str()), offset) << zone;
  }
  EXPECT_EQ(Steps().Zone(nullptr), "none");
  EXPECT_EQ(Steps().Zone(""), "none");
}

TEST(KQTime, OneFieldSaysWhatFollowsEvenWhenItFails) {
  const Steps steps;
  EXPECT_EQ(steps.Field("12-34", '-', 2), "12 34");
  EXPECT_EQ(steps.Field("123-4", '-', 2), "-7 4") << "too wide";
  EXPECT_EQ(steps.Field("-1 2", ' ', 2), "-7 2") << "negative";
  EXPECT_EQ(steps.Field("x7-", '-', 2), "0 null");
  EXPECT_EQ(steps.Field("12Z5", '*', 2), "12 5");
  EXPECT_EQ(steps.Field("12", '-', 2), "-7 unchanged");
  EXPECT_EQ(steps.Field(std::string(1000, '1'), '*', 1000), "2147483647 null");
}

TEST(KQTime, TellsUnknownNamesOnStandardOutput) {
  testing::internal::CaptureStdout();
  TimeOf("Sunday, 06 Nov 1994 08:49:37 GMT");
  TimeOf("Sun, 06 M\xE4rz% 1994 08:49:37 GMT");
  TimeOf("Sun, 06                  ");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Week not found Sunday\nMonth not found M\xE4rz%\n");
}

TEST(KQTime, CalendarArithmeticWraps) {
  EXPECT_EQ(CKQTime().Makegmtime(2106, 1, 7, 6, 28, 17), 1);
  EXPECT_EQ(CKQTime().Makegmtime(1970, 0, 1, 0, 0, kMin), 0);
  for (const int month : {kMin, -1, kMax})
    for (const int other : {kMin, kMax})
      EXPECT_GE(CKQTime().Makegmtime(other, month, other, other, other, other), 0);
}

TEST(KQTime, FormatsWithinTheRoomThatItNames) {
  std::string bytes(28, '#');
  EXPECT_FALSE(CKQTime().GetDCDate(-1, bytes.data()));
  EXPECT_EQ(bytes, std::string(28, '#'));
  EXPECT_TRUE(CKQTime().GetDCDate(0, bytes.data()));
  EXPECT_EQ(bytes, "1970-01-01T00:00:00Z" + std::string(6, '\0') + "##");

  std::vector<WChar> units(23, '#');
  EXPECT_FALSE(CKQTime().GetDCDateW(kMin, units.data()));
  EXPECT_EQ(units[0], '#');
  EXPECT_TRUE(CKQTime().GetDCDateW(kMax, units.data()));
  EXPECT_EQ(Utf8(units.data()), "2038-01-19T03:14:07Z");
  EXPECT_EQ(units[21], '#');
}

TEST(KQTime, ReadsDCDatesOnlyFromSystemStrings) {
  constexpr LONG kNone = -1, kIso = 1204366830;
  const struct {
    Wide text;
    LONG seconds;
  } cases[] = {{W("  2008-03-01T10:20:30"), kIso},
               {W("2008-03-01T10:20:30+0100\0x"), kIso + 3600},
               {W("2008-03-01T10:20\0:30"), kNone},
               {W(u"2008-03-01T10:20:3\xFF10"), kIso - 27},
               {W("2008-3-1 10:20:30"), kNone},
               {W("Sun, 06 Nov 1994 08:49:37 GMT"), kNone},
               {nullptr, kNone}};
  for (const auto& c : cases) {
    const OwnedBstr text(c.text ? SysAllocStringLen(c.text, c.text.size()) : nullptr);
    LONG seconds = kNone;
    EXPECT_EQ(CKQTime().GetEpochTimeFromDCDateBSTR(&seconds, text.get()), c.seconds != kNone);
    EXPECT_EQ(seconds, c.seconds) << text.utf8();
    const FailingMemory memory(0);
    EXPECT_FALSE(CKQTime().GetEpochTimeFromDCDateBSTR(&seconds, text.get()));
  }
}

TEST(KQTime, MakingOneLooksUpTheZone) {
  const Zone utc("UTC0");  // until the end of the scope
  WChar text[40];
  CBaseTool::GetPubDate(0, text, 40);
  SetVariable("TZ", "CST-8");
  const CKQTime reader;
  CBaseTool::GetPubDate(0, text, 40);
  EXPECT_EQ(Utf8(text), "Thu, 01 Jan 1970 08:00:00 -0800");
}

TEST(KQTime, ConvertsFileTimes) {
  for (const LONG seconds : {kMin, -1, 0, 784111777, kMax}) {
    FILETIME time;
    CKQTime::TimeTToFileTime(seconds, &time);
    const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    EXPECT_EQ(ticks, 116444736000000000 + seconds * std::int64_t{10000000});
    const std::uint64_t later = ticks + 9999999;
    time = {static_cast<ULONG>(later), static_cast<ULONG>(later >> 32)};
    EXPECT_EQ(CKQTime::FileTimeToTimeT(&time), seconds) << "fractions are cut off";
  }
}

}  // namespace vosmere::test::dates
