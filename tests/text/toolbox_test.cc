#include "vosmere/text/toolbox.h"

#include <algorithm>
#include <limits>
#include <set>

#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "vosmere/platform/keys.h"
#include "vosmere/text/unicode_tool.h"
#include "vosmere/tree/folder_node.h"

namespace vosmere::test::toolbox {

constexpr LONG kNoonOnNewYear2024 = 1704110400;

std::string PubDate(const char* zone, LONG seconds, int capacity = 40) {
  SetTimeZone(zone);
  WChar text[64] = {};
  std::fill_n(text, 63, WChar{'#'});
  EXPECT_EQ(CBaseTool::GetPubDate(seconds, text, capacity), capacity >= 40);
  EXPECT_EQ(text[40], '#');
  SetTimeZone(nullptr);
  return Utf8(text);
}

TEST(BaseTool, PubDateIsLocalTimeInEnglishWithEastAsMinusAndWestAsPlus) {
  const struct {
    const char* zone;
    LONG seconds;
    const char* date;
  } cases[] = {{"UTC0", kNoonOnNewYear2024, "Mon, 01 Jan 2024 12:00:00 GMT"},
               {"UTC0", 0, "Thu, 01 Jan 1970 00:00:00 GMT"},
               {"UTC0", std::numeric_limits<LONG>::max(), "Tue, 19 Jan 2038 03:14:07 GMT"},
               {"CST-8", kNoonOnNewYear2024, "Mon, 01 Jan 2024 20:00:00 -0800"},
               {"EST5", kNoonOnNewYear2024, "Mon, 01 Jan 2024 07:00:00 +0500"},
               {"IST-5:30", kNoonOnNewYear2024, "Mon, 01 Jan 2024 17:30:00 -0530"},
               {"NST3:30", kNoonOnNewYear2024, "Mon, 01 Jan 2024 08:30:00 +0330"}};
  for (const auto& c : cases) EXPECT_EQ(PubDate(c.zone, c.seconds), c.date);
}

TEST(BaseTool, PubDateOfATimeThatThePlatformCannotShowIsEmpty) {
  EXPECT_THAT(PubDate("UTC0", std::numeric_limits<LONG>::min()),
              testing::AnyOf("Fri, 13 Dec 1901 20:45:52 GMT", ""));
}

TEST(BaseTool, PubDateLeavesDaylightSavingOutOfTheZone) {
  // Wine knows no daylight saving for a zone given this way, and so shows an hour less.
  EXPECT_THAT(PubDate("EST5EDT", kNoonOnNewYear2024 + 182 * 86400),
              testing::AnyOf("Mon, 01 Jul 2024 08:00:00 +0500", "Mon, 01 Jul 2024 07:00:00 +0500"));
}

TEST(BaseTool, PubDateNeedsRoomForFortyUnits) {
  EXPECT_EQ(PubDate("UTC0", 0, 39), "");
  EXPECT_EQ(PubDate("UTC0", 0, 0).front(), '#') << "no room, no terminator";
}

TEST(BaseTool, UuidsAreLowerCaseAndNew) {
  std::set<std::string> seen;
  for (int i = 0; i < 100; ++i) {
    WChar text[37] = {'#'};
    EXPECT_FALSE(CBaseTool::GetUUID(text, 36));
    EXPECT_EQ(text[0], '#');
    ASSERT_TRUE(CBaseTool::GetUUID(text, 37));
    std::string uuid = Utf8(text);
    EXPECT_TRUE(seen.insert(uuid).second);
    for (char& c : uuid)
      if ((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')) c = 'x';
    EXPECT_EQ(uuid, "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx");
  }
}

TEST(BaseTool, AssignUuidReplacesTheItemsIdentity) {
  CFolderNode* const node = CFolderNode::New();
  node->SetUUID(W("old"));
  EXPECT_TRUE(CBaseTool::AssignUUID(node));
  EXPECT_EQ(Utf8(node->GetUUID()).size(), 36u);
  CBaseNode::Delete(node);
}

unsigned heldKeys = 0;  // a bit for each of Shift, Control, Alt

TEST(BaseTool, ModifierKeysHaveOneCode) {
  EXPECT_EQ(CBaseTool::GetModifyKeyState(), 0) << "nobody types during the tests";
  SetKeyStateSource(
      [](int key) { return static_cast<short>(heldKeys >> (key - 16) & 1 ? -1 : 1); });
  const int codes[] = {0, 1, 2, 4, 3, 1, 2, 4};
  for (heldKeys = 0; heldKeys < 8; ++heldKeys)
    EXPECT_EQ(CBaseTool::GetModifyKeyState(), codes[heldKeys]) << heldKeys;
  SetKeyStateSource(nullptr);
}

TEST(BaseTool, DeleteFreesWhatTheLibraryHandedOut) {
  const long before = LiveAllocations();
  char* text = nullptr;
  int length = 0;
  ASSERT_TRUE(CUnicodeTool::TCHARGetUTF8(W("text"), &text, &length));
  CBaseTool::Delete(text);
  EXPECT_EQ(LiveAllocations(), before);
}

}  // namespace vosmere::test::toolbox
