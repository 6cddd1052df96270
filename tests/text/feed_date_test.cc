#include "vosmere/text/feed_date.h"

#include <chrono>
#include <initializer_list>
#include <limits>
#include <sstream>
#include <thread>

#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "vosmere/platform/internal/clock.h"
#include "vosmere/text/toolbox.h"

namespace vosmere::test::feed_date {

constexpr int kMax = std::numeric_limits<int>::max(), kMin = std::numeric_limits<int>::min();
constexpr LONG kHour = 3600;
constexpr LONG kMail = 784111777;  // 1994-11-06T08:49:37Z
constexpr LONG kIso = 1204366830;  // 2008-03-01T10:20:30Z
constexpr LONG kNone = -1;

/// The time; kNone where GetTime gives the current one.
LONG TimeOf(const std::string& text) {
  SetClockForTesting([]() -> LONG { return kMin; });
  LONG seconds = 5;
  const bool found = CKQTime().GetTime(text.c_str(), &seconds);
  SetClockForTesting(nullptr);
  EXPECT_EQ(found, seconds != kMin) << text;
  return found ? seconds : kNone;
}

void Expect(LONG seconds, std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) EXPECT_EQ(TimeOf(text), seconds) << text;
}

/// The steps, which programs do not call, told as text.
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

TEST(KQTime, ReadsThreeFormsAndGivesNowForAnythingElse) {
  Expect(kMail, {"Sun, 06 Nov 1994 08:49:37 GMT", "Sun, 6 Nov 1994 08:49:37"});
  Expect(kIso, {"2008-03-01T10:20:30Z", "2008-03-01x10:20:30", "2008-3-1 10:20:30"});
  Expect(kNone, {"", "x", "Sun, 06 Nov 94", "06 Nov 1994 08:49:37 GMT", "2008-03-01T07:05",
                 "2008-3-1 7:05", "2008-3-1 7:05:091", "20083-1 7:05:09", "2008-03-01T10.20.30Z",
                 "2008-03-01T10:20:xZ", "Sun, 06 Nov 1994 08:49", "       :::,,,       ",
                 "Sun, 06 Nov 1994 -8:49:37 GMT", "Sun, 06 Nov 1994 08:49:4294967296 GMT"});
  LONG seconds = kNone;
  EXPECT_FALSE(CKQTime().GetTime(nullptr, &seconds));
  EXPECT_GT(seconds, kIso);
}

TEST(KQTime, AddsZonesToTheClocksReading) {
  Expect(kMail - 5 * kHour, {"Sun, 06 Nov 1994 08:49:37 EST"});
  Expect(kMail + kHour + 1800, {"Sun, 06 Nov 1994 08:49:37 +0130"});
  Expect(kIso + kHour, {"2008-03-01T10:20:30+01:00", "2008-03-01 10:20:30.125+0100"});
}

TEST(KQTime, PubDateNeedsTheDaysNameCaseAndAllButNotTheRightOne) {
  Expect(kNone, {"Sunday, 06 Nov 1994 08:49:37 GMT", "sun, 06 Nov 1994 08:49:37 GMT"});
  Expect(kMail, {"Mon, 06 Nov 1994 08:49:37 GMT"});
}

TEST(KQTime, PubDateTakesTheZoneForSecondsThatAreMissing) {
  Expect(kMail - 37, {"Sun, 06 Nov 1994 08:49 EST"});
}

TEST(KQTime, PubDateTakesCommasSpacesAndColonsForTheSame) {
  Expect(kMail - 5 * kHour, {",:Sun:06 Nov,,1994,08 49 37:EST,x"});
  Expect(kMail, {"Sun, 06 Nov 1994 08:49:37 +05:30"});
}

TEST(KQTime, PubDateLetsDaysAndHour24CarryOver) {
  Expect(883526400, {"Thu, 00 Jan 1998 00:00:00 GMT", "Wed, 30 Dec 1997 24:00:00 GMT"});
  Expect(888883200, {"Thu, 31 Feb 1998 00:00:00 GMT"});
  Expect(0, {"Thu, 01 Jan 1970 00:00:00 EST"});
  Expect(2145916800, {"Thu, 01 Jan 2038 00:00:00 GMT"});
  Expect(kNone, {"Thu, 32 Jan 1998 00:00:00 GMT", "Thu, 01 Jan 1998 25:00:00 GMT",
                 "Thu, 01 Jan 1998 00:60:00 GMT", "Thu, 01 Jan 1998 00:00:60 GMT",
                 "Thu, 31 Dec 1969 00:00:00 GMT", "Thu, 01 Jan 2039 00:00:00 GMT"});
}

TEST(KQTime, PubDateHas255BytesAtMost) {
  const std::string date = "Sun, 06 Nov 1994 08:49:37 ";
  Expect(kMail, {date + std::string(255 - date.size(), 'x'),
                 "Sun, " + std::string(200, '0') + "6 Nov 1994 08:49:37"});
  Expect(kNone, {date + std::string(256 - date.size(), 'x')});
}

TEST(KQTime, DCDateHasNoRanges) {
  Expect(1204329600, {"2008-02-30T00:00:00Z", "2007-14-30T00:00:00Z", "2008- 3-+1T00:00:00 "});
  Expect(0, {"1969-12-31T23:59:59Z"});
  Expect(438543104, {"2120-01-01T00:00:00Z"});
}

TEST(KQTime, DCDateTakesForItsZoneWhatFollowsByte19) {
  Expect(kIso, {"2008-3-1 10:20:30 +0100", "2008-03-01T10:20:30 GMT", "2008-03-01T10:20:30."});
  Expect(kIso + kHour, {"2008-3-1 10:20:30  +0100"});
  Expect(kIso + 6 * kHour, {"2008-3-1 9:20:30 GMT"});
}

TEST(KQTime, DCDateOf41BytesHasNoZone) {
  const std::string date = "2008-03-01T10:20:30." + std::string(15, '5');
  Expect(kIso + kHour, {date + "+0100"});
  Expect(kIso, {date + "5+0100"});
}

TEST(KQTime, ZonesAreExact) {
  const struct {
    const char *zones, *offset;
  } cases[] = {{"GMT UT Z", "0 0"},
               {"PST", "-8 0"},
               {"EDT", "-4 0"},
               {"A", "-1 0"},
               {"I", "-9 0"},
               {"K", "-10 0"},
               {"M", "-12 0"},
               {"N", "1 0"},
               {"Y", "12 0"},
               {"+2400", "24 0"},
               {"-0959", "-9 -59"},
               {"+05:30", "5 30"},
               {"J z gmt UTC +01 0100 +2401 +0060 *0100 +0-30 +-130 +1:00 +010000", "none"}};
  for (const auto& c : cases) {
    std::istringstream zones(c.zones);
    for (std::string zone; zones >> zone;) EXPECT_EQ(Steps().Zone(zone.c_str()), c.offset) << zone;
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

TEST(KQTime, AgreesWithTheCalendarOnEveryDay) {
  using namespace std::chrono;
  for (sys_days day{}; day < sys_days{year{2038} / 1 / 19}; day += days{1}) {
    const year_month_day date(day);
    const int y = static_cast<int>(date.year()), d = static_cast<int>(unsigned{date.day()});
    const int m = static_cast<int>(unsigned{date.month()}) - 1;
    const auto seconds = static_cast<LONG>(day.time_since_epoch().count() * 86400 + 3661);
    ASSERT_EQ(CKQTime().Makegmtime(y, m, d, 1, 1, 1), seconds);
    ASSERT_EQ(CKQTime().Makegmtime(y + 1, m - 12, d, 2, -59, 1), seconds);
    char text[26];
    ASSERT_TRUE(CKQTime().GetDCDate(seconds, text));
    ASSERT_EQ(TimeOf(text), seconds);
  }
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
  const struct {
    Wide text;
    LONG seconds;
  } cases[] = {
      {W("2008-03-01T10:20:30+01:00"), kIso + kHour},   {W("  2008-03-01T10:20:30"), kIso},
      {W("2008-03-01T10:20:30+0100\0x"), kIso + kHour}, {W("2008-03-01T10:20\0:30"), kNone},
      {W(u"2008-03-01T10:20:3\xFF10"), kIso - 27},      {W("2008-3-1 10:20:30"), kNone},
      {W("Sun, 06 Nov 1994 08:49:37 GMT"), kNone},      {nullptr, kNone}};
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
  WChar text[40];
  CBaseTool::GetPubDate(0, text, 40);
  SetZoneVariable("CST-8");
  const CKQTime reader;
  CBaseTool::GetPubDate(0, text, 40);
  EXPECT_EQ(Utf8(text), "Thu, 01 Jan 1970 08:00:00 -0800");
  SetTimeZone(nullptr);
}

TEST(KQTime, ConvertsFileTimes) {
  for (const LONG seconds : {kMin, -1, 0, kMail, kMax}) {
    FILETIME time;
    CKQTime::TimeTToFileTime(seconds, &time);
    const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    EXPECT_EQ(ticks, 116444736000000000 + seconds * std::int64_t{10000000});
    const std::uint64_t later = ticks + 9999999;
    time = {static_cast<ULONG>(later), static_cast<ULONG>(later >> 32)};
    EXPECT_EQ(CKQTime::FileTimeToTimeT(&time), seconds) << "fractions are cut off";
  }
}

TEST(KQTime, AnyByteAnywhereIsADateOrNone) {
  testing::internal::CaptureStdout();
  for (const std::string text :
       {"Sun, 06 Nov 1994 08:49:37 +0130", "2008-03-01T10:20:30.5-01:00", "2008-3-1 10:20:30"})
    for (std::size_t i = 0; i < text.size(); ++i)
      for (int byte = 0; byte < 256; ++byte) {
        std::string mutated = text;
        mutated[i] = static_cast<char>(byte);
        EXPECT_GE(TimeOf(mutated), kNone) << mutated;
      }
  testing::internal::GetCapturedStdout();
}

TEST(KQTime, ThreadsReadAtTheSameTime) {
  const CKQTime shared;
  std::vector<std::thread> threads;
  for (int hour = 0; hour < 8; ++hour)
    threads.emplace_back([&shared, hour] {
      const std::string text = "Sun, 06 Nov 1994 0" + std::to_string(hour) + ":49:37 GMT";
      for (int i = 0; i < 1000; ++i)
        for (const CKQTime& reader : {shared, CKQTime()}) {
          LONG seconds = 0;
          reader.GetTime(text.c_str(), &seconds);
          ASSERT_EQ(seconds, kMail - (8 - hour) * kHour);
        }
    });
  for (std::thread& thread : threads) thread.join();
}

}  // namespace vosmere::test::feed_date
