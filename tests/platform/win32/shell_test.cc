#include "vosmere/platform/internal/shell.h"

#include <cstdlib>

#include "tests/support/test.h"
#include "vosmere/favorites/favorites.h"

namespace vosmere::test::shell {

TEST(Shell, KnowsTheUsersFavorites) {
  WChar path[kShellPathLimit];
  CFavorites().GetFavoritesFilePath(path);
  EXPECT_EQ(Utf8(path), std::string(std::getenv("USERPROFILE")) + "\\Favorites");
}

}  // namespace vosmere::test::shell
