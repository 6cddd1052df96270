#include "vosmere/cpp/dates.h"

#include <gtest/gtest.h>

#include "vosmere/cpp/own.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

using namespace std::chrono;

constexpr sys_seconds kDate = sys_days(1994y / November / 6) + 8h + 49min + 37s;

TEST(ParseDate, TakesEveryKindOfText) {
  const char text[] = "Sun, 06 Nov 1994 08:49:37 GMT";
  const Wide wide(text);
  EXPECT_EQ(ParseDate(text), kDate);
  EXPECT_EQ(ParseDate(std::u16string_view(u"1994-11-06T08:49:37Z")), kDate);
  EXPECT_EQ(ParseDate(wide.get()), kDate);
  EXPECT_EQ(ParseDate("yesterday"), std::nullopt);
  EXPECT_EQ(ParseDate(TextView(nullptr)), std::nullopt);
  EXPECT_EQ(ParseDate("9999-01-01"), sys_days(9999y / January / 1));
}

TEST(Dates, GoOutWhereTheLibraryHasThem) {
  EXPECT_EQ(ToIsoDate(kDate), "1994-11-06T08:49:37Z");
  EXPECT_EQ(ToIsoDate(kDate - years(30)), std::nullopt) << "before 1970";
  EXPECT_EQ(ToIsoDate(kDate + years(50)), std::nullopt) << "after 2038";
  EXPECT_EQ(ToDisplayDate(kDate)->size(), std::string_view("Mar 01 2008 14:05 Sat").size());
  EXPECT_EQ(ToDisplayDate(kDate + years(50)), std::nullopt);
}

TEST(ItemTimes, SetThoseThatAreGiven) {
  const Item<CUrlNode> page(CUrlNode::New());
  EXPECT_TRUE(SetTimes(*page, {.added = kDate, .lastVisited = kDate + 1s}));
  EXPECT_FALSE(SetTimes(*page, {.added = kDate + 2s, .modified = sys_days(9999y / January / 1)}));
  const ItemTimes times = TimesOf(*page);
  EXPECT_EQ(times.added, kDate);
  EXPECT_EQ(times.lastVisited, kDate + 1s);
  EXPECT_GT(times.modified, kDate + years(20)) << "now, as of a new page";
}

}  // namespace
}  // namespace vosmere
