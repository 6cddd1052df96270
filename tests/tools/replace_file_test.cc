#include "tools/replace_file.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tools/failure.h"

namespace vosmere::tool {
namespace {

using test::ReadBytes;
using test::TempFolder;
using test::WriteBytes;

/// Replaces `file` by "new", or fails when half of that is written.
void Replace(const std::filesystem::path& file, bool fail) {
  ReplaceFile(file.string(), [&](const std::filesystem::path& path) {
    WriteBytes(path, fail ? "ne" : "new");
    if (fail) throw Failure{kTrouble, "full"};
  });
}

TEST(ReplaceFile, KeepsTheOldFileUntilTheNewOneIsWhole) {
  const TempFolder folder;
  WriteBytes(folder / "file", "old");
  EXPECT_THROW(Replace(folder / "file", true), Failure);
  EXPECT_EQ(ReadBytes(folder / "file"), "old");

  Replace(folder / "file", false);
  EXPECT_EQ(ReadBytes(folder / "file"), "new");

  const std::filesystem::directory_iterator files((folder / "file").parent_path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

}  // namespace
}  // namespace vosmere::tool
