#include "vosmere/platform/folder.h"

#include <dirent.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <set>

#include "tests/support/files.h"

// Opening a folder takes memory of the C library, which runs out with that of the tests.
extern "C" DIR* opendir(const char* name) {
  static const auto next = reinterpret_cast<DIR* (*)(const char*)>(dlsym(RTLD_NEXT, "opendir"));
  void* const block = operator new(1, std::nothrow);
  operator delete(block);
  errno = ENOMEM;
  return block ? next(name) : nullptr;
}

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
