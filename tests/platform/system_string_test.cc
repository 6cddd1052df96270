#include "vosmere/platform/system_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

TEST(SystemString, KnowsItsLengthAndEndsWithZero) {
  const OwnedBstr text(SysAllocStringLen(W(u"a\0bc"), 3));
  EXPECT_EQ(SysStringLen(text.get()), 3u);
  EXPECT_EQ(text.get()[2], 'b');
  EXPECT_EQ(text.get()[3], 0);
  std::uint32_t prefix;
  std::memcpy(&prefix, reinterpret_cast<const char*>(text.get()) - 4, 4);
  EXPECT_EQ(prefix, 6u);
  const OwnedBstr room(SysAllocStringLen(nullptr, 5));
  EXPECT_EQ(SysStringLen(room.get()), 5u);
  EXPECT_EQ(room.get()[5], 0);
}

TEST(SystemString, NullHasNoCopyAndNoLength) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  SysFreeString(nullptr);
  EXPECT_EQ(OwnedBstr(SysAllocString(W(""))).utf8(), "");
}

TEST(SystemString, RefusesWhatThePrefixCannotHold) {
  EXPECT_EQ(SysAllocStringLen(nullptr, std::size_t{1} << 31), nullptr);
  EXPECT_EQ(SysAllocStringLen(nullptr, std::numeric_limits<std::size_t>::max()), nullptr);
}

TEST(SystemString, IsReplacedByATextThatMayLieWithinIt) {
  OwnedBstr text(SysAllocString(W("longer than before")));
  BSTR raw = SysAllocString(W("0123456789"));
  EXPECT_EQ(SysReAllocString(&raw, raw + 3), 1);
  EXPECT_EQ(Utf8(raw), "3456789");
  EXPECT_EQ(SysReAllocString(&raw, text.get()), 1);
  EXPECT_EQ(Utf8(raw), "longer than before");
  EXPECT_EQ(SysStringLen(raw), 18u);
  SysFreeString(raw);
}

}  // namespace
}  // namespace vosmere::test
