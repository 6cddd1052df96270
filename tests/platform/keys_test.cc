#include "vosmere/platform/keys.h"

#include <gtest/gtest.h>

namespace vosmere::test {
namespace {

TEST(Keys, AreThePlatformsUnlessASourceAnswers) {
  EXPECT_GE(KeyState(kKeyShift), 0);
  SetKeyStateSource([](int key) { return static_cast<short>(key == kKeyControl ? -127 : 1); });
  EXPECT_EQ(KeyState(kKeyControl), -127);
  EXPECT_EQ(KeyState(kKeyAlt), 1);
  SetKeyStateSource(nullptr);
  EXPECT_GE(KeyState(kKeyControl), 0);
}

}  // namespace
}  // namespace vosmere::test
