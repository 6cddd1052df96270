#include "vosmere/platform/security_zone.h"

#include <map>

#include "tests/support/platform.h"
#include "tests/support/test.h"

namespace vosmere::test::security_zone {

TEST(Zone, IsToldByTheHostOnAnyThreadAndWhatMayBeAnotherHostIsNotTrusted) {
  constexpr LONG kInternet = 3;
  const std::map<std::string, LONG> zones = {
      {"machine", 0}, {"network", kZoneOfPlainNames}, {"internet", kInternet}};
  AtOnce(1, [&](int) {  // a thread needs no preparation to ask
    for (const auto& row : TestTable("security_zones.txt")) {
      const LONG zone = SecurityZone(W(row[1]));
      if (row[0] == "untrusted") {
        EXPECT_GE(zone, kInternet) << row[1];
      } else {
        EXPECT_EQ(zone, zones.at(row[0])) << row[1];
      }
    }
  });
  EXPECT_GE(SecurityZone(nullptr), kInternet);
}

TEST(Zone, ACheckOfTheProgramsOwnStandsInForThePlatforms) {
  {
    const Hooked<SetSecurityZoneCheck> check(
        [](const WChar* url) { return LONG{*url == 0 ? -1 : 4}; });
    EXPECT_EQ(SecurityZone(W("file:///C:/page.html")), 4);
    EXPECT_EQ(SecurityZone(nullptr), -1);
  }
  EXPECT_EQ(SecurityZone(W("file:///C:/page.html")), 0);
}

}  // namespace vosmere::test::security_zone
