#include "vosmere/platform/internal/folder.h"

#include <dirent.h>
#include <dlfcn.h>

#include <cerrno>
#include <new>

#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/favorites/import_favorites.h"

// Opening a folder allocates memory in the C library, which the test makes fail as well.
extern "C" DIR* opendir(const char* name) {
  static const auto next = reinterpret_cast<DIR* (*)(const char*)>(dlsym(RTLD_NEXT, "opendir"));
  void* const block = operator new(1, std::nothrow);
  operator delete(block);
  errno = ENOMEM;
  return block ? next(name) : nullptr;
}

namespace vosmere::test::folder {

TEST(FolderListing, EveryNameLeadsToItsFile) {
  const TempFolder folder;
  int count = 0;
  for (const char* const name : {"plain", "\xFF", "\xEF\xBF\xBD"}) {
    std::filesystem::create_directory(folder / name);
    WriteBytes(folder / name / "caf\xE9\\z.url",
               "[InternetShortcut]\nURL=in:" + std::to_string(++count));
  }
  std::filesystem::create_directory_symlink("plain", folder / "link");
  const TreePtr tree(ImportFavorites(W(""), W((folder / "").parent_path()), nullptr));
  const auto nameOrAddress = [](const RNode* link) {
    return link->type == NT_URL ? Utf8(static_cast<CUrlNode*>(link->item)->GetUrl()) : NameOf(link);
  };
  EXPECT_EQ(ChainShape(tree->firstChild, nameOrAddress),
            "link() plain(in:1) \uFFFD(in:2) \uFFFD(in:3)");
  EXPECT_TRUE(tree["caf\uFFFD\uFFFDz"]);
}

}  // namespace vosmere::test::folder
