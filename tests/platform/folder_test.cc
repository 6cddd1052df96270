#include "vosmere/platform/folder.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/files.h"

namespace vosmere::test {
namespace {

TEST(Folder, ListsFilesAndFoldersOnce) {
  const TempFolder folder;
  WriteBytes(folder / "a.url", "");
  WriteBytes(folder / "b.txt", "");
  std::filesystem::create_directories(folder / "sub" / "below");
  for (const char* const separator : {"", "/", "\\"}) {
    FolderListing listing;
    ASSERT_TRUE(listing.Open(W((folder / "").parent_path().string() + separator)));
    std::multiset<std::string> entries;
    while (listing.Next())
      entries.insert(Utf8(listing.Name()) + (listing.IsFolder() ? "/" : "") +
                     (listing.IsLink() ? " link" : ""));
    EXPECT_EQ(entries, (std::multiset<std::string>{"a.url", "b.txt", "sub/"}));
    EXPECT_FALSE(listing.Next());
  }
}

TEST(Folder, WhatIsNoFolderDoesNotOpen) {
  const TempFolder folder;
  WriteBytes(folder / "file", "");
  for (const Wide& path : {W(folder / "file"), W(folder / "none"), W("")}) {
    FolderListing listing;
    EXPECT_FALSE(listing.Open(path));
    EXPECT_FALSE(listing.Next());
  }
}

}  // namespace
}  // namespace vosmere::test
