#include "vosmere/platform/internal/folder.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/files.h"

namespace vosmere::test {
namespace {

TEST(FolderListing, ANameThatNoPathCanSayLeadsElsewhere) {
  const TempFolder folder;
  for (const char* const name : {"..\\circle", "\xFF", "\xEF\xBF\xBD", "plain"})
    std::filesystem::create_directory(folder / name);
  FolderListing listing;
  ASSERT_TRUE(listing.Open(W(folder / "")));
  std::multiset<std::string> shown;
  while (listing.Next()) shown.insert(Utf8(listing.Name()) + (listing.IsLink() ? " ->" : ""));
  EXPECT_EQ(shown,
            (std::multiset<std::string>{"..\uFFFDcircle ->", "plain", "\uFFFD", "\uFFFD ->"}));
}

}  // namespace
}  // namespace vosmere::test
