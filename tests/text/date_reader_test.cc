#include "vosmere/text/date_reader.h"

#include <cstdio>
#include <initializer_list>

#include "tests/support/test.h"

namespace vosmere::test::date_reader {

// 784111777 is 1994-11-06T08:49:37Z.

/// "SECONDS OFFSET FORM", the offset "?" when the text does not tell; or "none".
std::string Told(bool found, const DateReading& date) {
  if (!found) return "none";
  constexpr const char* kForms[] = {"mail", "iso", "loose", "month"};
  return std::to_string(date.seconds) + ' ' +
         (date.zoneKnown ? std::to_string(date.offsetMinutes) : "?") + ' ' +
         kForms[static_cast<int>(date.form)];
}

/// Read as bytes and as wide text, which must agree.
std::string Read(const std::string& text) {
  DateReading date{-1, 0, false, DateForm::kLoose};
  const std::string told = Told(ReadDate(text.data(), text.size(), &date), date);
  EXPECT_TRUE(told != "none" || date.seconds == -1);
  const std::u16string wide(text.begin(), text.end());
  EXPECT_EQ(Told(ReadDate(Wide(wide).get(), wide.size(), &date), date), told) << text;
  return told;
}

void Expect(const std::string& told, std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) EXPECT_EQ(Read(text), told) << text;
}

TEST(DateReader, ReadsMailDatesAsFeedsWriteThem) {
  Expect("784111777 0 mail",
         {"Sun, 06 Nov 1994 08:49:37 GMT", "6 Nov 1994 8:49:37 Z", "6 Nov 1994 08:49:37 +00:00",
          "sunday,06 NOVEMBER 94 08:49:37 ut", "Mon 06-Nov-94 08:49:37 UTC",
          "\r\n  Sun., 6 Nove. 94 08:49:37.25 +0000 (noon? \\) (no))\n",
          "Sun, 06 Nov (x) 1994 08 : 49 :37 UTC(x)", "6 Nov 94, 8:49:37 GMT",
          "Sun, 06 Nov 1994 ,08:49:37 Z"});
  Expect("784111777 -300 mail",
         {"Sun, 06 Nov 1994 03:49:37 EST", "Sun, 06 Nov 1994 03:49:37 GMT-05"});
  Expect("784111777 90 mail", {"Sun, 06 Nov 1994 10:19:37 +0130"});
  Expect("784111740 ? mail", {"Sun, 06 Nov 1994 08:49"});
  Expect("784080000 ? mail", {"Sun, 06 Nov 1994"});
  Expect("-19800 330 mail", {"Thu, 1 Jan 1970 00:00:00 +0530"});
}

TEST(DateReader, ReadsTheMonthBeforeTheDayInWords) {
  Expect("784111777 ? month", {"Sun Nov  6 08:49:37 1994", "Nov. 6, 8 : 49:37.5 (x)1994",
                               "sunday, NOVEMBER 06, 1994, 08:49:37", "Nov 6 08:49:37 CEST 1994"});
  Expect("784111777 0 month",
         {"Sun Nov 06 08:49:37 +0000 1994", "Sun Nov 6 1994 08:49:37 GMT+0000 (noon)"});
  Expect("784111777 -420 month", {"Sun, Nov 6 1994 01:49:37 -0700", "Sun Nov 6 01:49:37 1994 -0700",
                                  "Sun Nov 6 01:49:37 -07 1994", "Sun Nov 6 01:49:37MST 1994"});
  Expect("784111740 ? month", {"Nov 6 08:49 1994"});
  Expect("784080000 ? month", {"Sun, Nov 6 1994", "Nov 6,1994,"});
  Expect("none", {"Nov",
                  "Nov 1994",
                  "Nov 6",
                  "Nov 61994",
                  "Nov 31 1994",
                  "Nov 6 94",
                  "Nov 6 94 08:49:37",
                  "Nov 6 0849 1994",
                  "Nov 6 08:49:37",
                  "Nov 6 08:49:37 94",
                  "Nov 6 08:491994",
                  "Nov 6 08:49:371994",
                  "Nov 6 08:49:37 19945",
                  "Nov 6 08:49:37 GMT",
                  "Nov 6 08:49:37 GMT1994",
                  "Nov 6 08:49:37 12 GMT 1994",
                  "Nov 6 08:49:37 GMT 1994 GMT",
                  "Nov 6 1994 08:49:37 1994",
                  "Nov Sun 6 1994",
                  "SunNov 6 1994",
                  "Sunnov 6 1994",
                  "Nov Nov 1994",
                  "11 6 1994",
                  "Sun 11/6 1994"});
}

TEST(DateReader, TakesShortYearsAndZonesAsRfc5322Does) {
  Expect("2493072000 0 mail", {"1 Jan 49 00:00 UT"});
  Expect("-631152000 0 mail", {"1 Jan 50 00:00 UT", "1 Jan 050 00:00 UT"});
  Expect("946684800 0 mail", {"1 Jan 100 00:00 UT"});
  Expect("784111777 ? mail", {"06 Nov 1994 08:49:37 -0000", "06 Nov 1994 08:49:37 A",
                              "06 Nov 1994 08:49:37 CEST", "06 Nov 1994 08:49:37"});
}

TEST(DateReader, ReadsIsoDatesFromTheYearToTheFraction) {
  Expect("757382400 ? iso", {"1994"});
  Expect("783648000 ? iso", {"1994-11"});
  Expect("784080000 ? iso", {"1994-11-06", "19941106"});
  Expect("784108800 0 iso", {"1994-11-06T08Z", "19941106T08Z"});
  Expect("784111740 0 iso", {"1994-11-06T08:49Z", "19941106T0849Z"});
  Expect("784111777 0 iso", {" 1994-11-06t08:49:37z\n", "1994-11-06 08:49:37 UTC",
                             "19941106T084937Z", "19941106T08:49:37,5+00"});
  Expect("784111777 -300 iso", {"1994-11-06T03:49:37.999999999999999999999-05:00"});
  Expect("784111777 ? iso", {"1994-11-06T08:49:37", "1994-11-06T08:49:37-00:00"});
}

TEST(DateReader, ReadsTheLooseForm) {
  Expect("784111777 ? loose", {"1994-11-6 8:49:37", "1994/11/06   08:49:37"});
  Expect("784111777 60 loose", {"1994-11-6T9:49:37.5+01:00"});
  Expect("784080000 ? loose", {"1994-11-6"});
}

TEST(DateReader, KnowsTheEndsOfTheCalendarAndOfTheDay) {
  Expect("-62135683140 1439 iso", {"0001-01-01T00:00:00+23:59"});
  Expect("253402300800 0 iso", {"9999-12-31T24:00:00Z"});
  Expect("788918400 0 iso", {"1994-12-31T23:59:60Z", "1994-12-31T24Z"});
  Expect("788918400 0 mail", {"31 Dec 1994 24:00:00 GMT"});
  Expect("none", {"0000-01-01", "10000-01-01", "2008-00-01", "2008-13-01", "2008-01-00",
                  "2008-01-01T24:00:01Z", "2008-01-01T25:00Z", "2008-01-01T00:60Z",
                  "2008-01-01T00:00:61Z", "30 Feb 2008 00:00 GMT", "1 Jan 10000 00:00 GMT"});
}

TEST(DateReader, LeavesNothingUnread) {
  Expect("none", {"",
                  " ",
                  "x",
                  "199",
                  "19941",
                  "199411",
                  "1994-",
                  "1994-11-",
                  "1994-11-06T",
                  "1994-11T08:49",
                  "1994T08",
                  "1994-11/06",
                  "1994-11-06 x",
                  "1994-11-06  T08:49",
                  "1994-11-06T08:",
                  "1994-11-06T08:49:",
                  "1994-11-06T08:4937",
                  "1994-11-06T0849:37",
                  "1994-11-06T08:49:37.",
                  "1994-11-06T08:49.5",
                  "1994-11-06T08:49:37ZZ",
                  "1994-11-06T08:49:37 CEST",
                  "1994-11-06T08:49:37A",
                  "1994-11-06T08:49:37Z+01",
                  "1994-11-06-05:00",
                  "+1994-11-06",
                  "1994-W45-7",
                  "1994-310",
                  "19941106T8:49",
                  "19941106T08493",
                  "784111777",
                  "1994-11-06T08:49:37+1",
                  "1994-11-06T08:49:37+010",
                  "1994-11-06T08:49:37+01:",
                  "1994-11-06T08:49:37+24:00",
                  "1994-11-06T08:49:37+0060"});
  Expect("none",
         {"Su, 06 Nov 1994", "Sundays, 06 Nov 1994", "Sun, 06 Nov", "Sun, 06 Nov 9",
          "Sun, 06 Nov 1994 x", "Sun, 06 Nov 1994 08", "Sun, 06 Nov 1994 0849",
          "Sun, 06 Nov 1994 08:49 PM", "Sun, 06 Nov 1994 08:49 J", "Sun, 06 Nov 1994 08:49 FOOBAR",
          "Sun, 06 Nov 1994 08:49 EST+0100", "Sun, 06 Nov 1994 08:49 GMT GMT",
          "Sun, 06 Nov 1994 08:49 GMT (open", "Sun, 06 Nov 199408:49",
          "Sun, 06 Nov 1994 08:49:37:12", "06 Nov 1994,,08:49", "06 Nov 1994 08:49:37, GMT"});
  Expect("none", {std::string("1994\0", 5), "1994" + std::string(1000, '0'),
                  "06 Nov 1994" + std::string(100000, '(')});
}

TEST(DateReader, ReadsAsciiOnlyButInComments) {
  DateReading date;
  EXPECT_FALSE(ReadDate(W(u"\u0661\u0669\u0669\u0664"), &date)) << "Arabic digits";
  EXPECT_FALSE(ReadDate(W(u"6 \u014Eov 1994"), &date)) << "the low byte is an N";
  EXPECT_TRUE(ReadDate(W(u"6 Nov 1994 (\u014E)"), &date));
  EXPECT_FALSE(ReadDate(static_cast<const char*>(nullptr), &date));
  EXPECT_FALSE(ReadDate(static_cast<const WChar*>(nullptr), &date));
}

TEST(DateReader, TellsEveryDayAsTheCalendarCountsIt) {
  std::int64_t days = -719162;
  for (int year = 1; year <= 9999; ++year) {
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    const int lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; days += lengths[month++ - 1])
      for (const int day : {1, lengths[month - 1], lengths[month - 1] + 1}) {
        char text[32];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
        DateReading date;
        ASSERT_EQ(ReadDate(text, &date), day <= lengths[month - 1]) << text;
        if (day <= lengths[month - 1]) {
          ASSERT_EQ(date.seconds, (days + day - 1) * 86400) << text;
        }
      }
  }
}

}  // namespace vosmere::test::date_reader
