#include "vosmere/platform/internal/shell.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/wide.h"
#include "vosmere/favorites/favorites.h"

namespace vosmere::test {
namespace {

TEST(Shell, KnowsTheUsersFavorites) {
  WChar path[kShellPathLimit];
  CFavorites().GetFavoritesFilePath(path);
  EXPECT_EQ(Utf8(path), std::string(std::getenv("USERPROFILE")) + "\\Favorites");
}

}  // namespace
}  // namespace vosmere::test
