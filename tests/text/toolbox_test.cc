#include "vosmere/text/toolbox.h"

#include <algorithm>
#include <limits>
#include <set>

#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/platform/keys.h"

namespace vosmere::test::toolbox {

using Limits = std::numeric_limits<LONG>;

constexpr LONG kNoonOnNewYear2024 = 1704110400, kNoonInJuly2024 = kNoonOnNewYear2024 + 182 * 86400;

TEST(BaseTool, PubDateIsLocalTimeInEnglishWithEastAsMinusAndWestAsPlus) {
  const struct {
    const char* zone;
    LONG seconds;
    int capacity;
    const char *date, *orElse = "no other";
  } cases[] = {
      {"UTC0", kNoonOnNewYear2024, 40, "Mon, 01 Jan 2024 12:00:00 GMT"},
      {"UTC0", 0, 40, "Thu, 01 Jan 1970 00:00:00 GMT"},
      {"UTC0", Limits::max(), 40, "Tue, 19 Jan 2038 03:14:07 GMT"},
      {"CST-8", kNoonOnNewYear2024, 64, "Mon, 01 Jan 2024 20:00:00 -0800"},
      {"EST5", kNoonOnNewYear2024, 40, "Mon, 01 Jan 2024 07:00:00 +0500"},
      {"IST-5:30", kNoonOnNewYear2024, 40, "Mon, 01 Jan 2024 17:30:00 -0530"},
      {"NST3:30", kNoonOnNewYear2024, 40, "Mon, 01 Jan 2024 08:30:00 +0330"},
      {"UTC0", Limits::min(), 40, "Fri, 13 Dec 1901 20:45:52 GMT"},
      // Wine has no daylight saving for a zone that is set this way, and shows an hour less.
      {"EST5EDT", kNoonInJuly2024, 40, "Mon, 01 Jul 2024 08:00:00 +0500",
       "Mon, 01 Jul 2024 07:00:00 +0500"},
      {"UTC0", 0, 39, ""},
      {"UTC0", 0, 0, "################################################################"},
  };
  for (const auto& c : cases) {
    const Zone zone(c.zone);
    WChar text[65] = {};
    std::fill_n(text, 64, WChar{'#'});
    EXPECT_EQ(CBaseTool::GetPubDate(c.seconds, text, c.capacity), c.capacity >= 40);
    EXPECT_EQ(text[40], '#');
    EXPECT_THAT(Utf8(text), AnyOf(c.date, c.orElse));
  }
}

TEST(BaseTool, UuidsAreLowerCaseAndNew) {
  std::set<std::string> seen;
  for (int i = 0; i < 50; ++i) {
    WChar text[37] = {'#'};
    EXPECT_FALSE(CBaseTool::GetUUID(text, 36));
    EXPECT_EQ(text[0], '#');
    EXPECT_TRUE(CBaseTool::GetUUID(text, 37));
    const auto node = New<CFolderNode>();
    EXPECT_TRUE(CBaseTool::AssignUUID(node.get()));
    for (std::string uuid :
         {Utf8(text), Utf8(node->GetUUID()), OwnedBstr(RNTool::CreateUUID()).utf8()}) {
      EXPECT_TRUE(seen.insert(uuid).second);
      for (char& c : uuid)
        if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')) c = 'x';
      EXPECT_EQ(uuid, "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx");
    }
  }
}

unsigned heldKeys = 0;  // a bit for each of Shift, Control, Alt

TEST(BaseTool, ModifierKeysHaveOneCode) {
  EXPECT_EQ(CBaseTool::GetModifyKeyState(), 0) << "nobody types during the tests";
  const Hooked<SetKeyStateSource> keys(
      [](int key) { return static_cast<short>(heldKeys >> (key - 16) & 1 ? -1 : 1); });
  const int codes[] = {0, 1, 2, 4, 3, 1, 2, 4};
  for (heldKeys = 0; heldKeys < 8; ++heldKeys)
    EXPECT_EQ(CBaseTool::GetModifyKeyState(), codes[heldKeys]) << heldKeys;
}

}  // namespace vosmere::test::toolbox
