#include "vosmere/base/system_string.h"

#include <cstring>
#include <limits>

#include "tests/support/test.h"

namespace vosmere::test::system_string {

TEST(SystemString, KnowsItsLengthAndEndsWithZero) {
  const OwnedBstr text(SysAllocStringLen(W(u"a\0bc"), 3));
  EXPECT_EQ(text.utf8(), std::string("a\0b", 3));
  EXPECT_EQ(text.get()[3], 0);
  std::uint32_t prefix;
  std::memcpy(&prefix, reinterpret_cast<const char*>(text.get()) - 4, 4);
  EXPECT_EQ(prefix, 6u);
  const OwnedBstr room(SysAllocStringLen(nullptr, 5));
  EXPECT_EQ(SysStringLen(room.get()), 5u);
  EXPECT_EQ(room.get()[5], 0);
}

TEST(SystemString, RefusesNullAndWhatThePrefixCannotHold) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  EXPECT_EQ(OwnedBstr(SysAllocString(W(""))).utf8(), "");
  for (const std::size_t size : {std::size_t{1} << 31, std::numeric_limits<std::size_t>::max()})
    EXPECT_EQ(SysAllocStringLen(nullptr, size), nullptr);
}

TEST(SystemString, IsReplacedByATextThatMayLieWithinIt) {
  BSTR text = SysAllocString(W("0123456789"));
  EXPECT_EQ(SysReAllocString(&text, text + 3), 1);
  EXPECT_EQ(Utf8(text), "3456789");
  EXPECT_EQ(SysReAllocString(&text, W("longer than before")), 1);
  EXPECT_EQ(OwnedBstr(text).utf8(), "longer than before");
}

}  // namespace vosmere::test::system_string
