#include "vosmere/platform/uuid.h"

#include <gtest/gtest.h>

#include <regex>

#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

TEST(Uuid, IsNewLowerCaseText) {
  WChar first[kUuidTextLength + 1], second[kUuidTextLength + 1];
  ASSERT_TRUE(NewUuidText(first));
  ASSERT_TRUE(NewUuidText(second));
  const std::regex form("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}");
  EXPECT_TRUE(std::regex_match(Utf8(first), form)) << Utf8(first);
  EXPECT_NE(Utf8(first), Utf8(second));
}

}  // namespace
}  // namespace vosmere::test
