// What a safe save preserves on Linux: links, owner and permissions.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/files.h"
#include "vosmere/storage/safe_save.h"

namespace vosmere::test {
namespace {

bool Save(const std::filesystem::path& path, const std::string& bytes,
          DocumentError* error = nullptr) {
  const FilePiece piece{bytes.data(), bytes.size()};
  return SafeSave(W(path), &piece, 1, nullptr, nullptr, error);
}

TEST(SafeSaveOnLinux, KeepsLinksAndRights) {
  const TempFolder folder;
  WriteBytes(folder / "file", "old");
  chmod((folder / "file").c_str(), 0640);
  const bool isRoot = geteuid() == 0;  // only root can change the owner
  ASSERT_TRUE(!isRoot || chown((folder / "file").c_str(), 1234, 2345) == 0);
  std::filesystem::create_symlink("file", folder / "link");
  ASSERT_TRUE(Save(folder / "link", "new"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
  struct stat status;
  ASSERT_EQ(stat((folder / "file").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_TRUE(!isRoot || (status.st_uid == 1234 && status.st_gid == 2345));
  EXPECT_EQ(ReadBytes(folder / "file"), "new");
  std::filesystem::create_symlink("nothing", folder / "dangling");
  EXPECT_FALSE(Save(folder / "dangling", "new"));
}

TEST(SafeSaveOnLinux, ADiskThatTakesNoMoreKeepsTheOldFile) {
  const TempFolder folder;
  WriteBytes(folder / "file", "old");
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small = {1000, before.rlim_max};
  auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  DocumentError error;
  const bool saved = Save(folder / "file", std::string(5000, 'x'), &error);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(saved);
  EXPECT_STREQ(error.reason, "cannot be written: File too large");
  EXPECT_EQ(ReadBytes(folder / "file"), "old");
  EXPECT_TRUE(Save(folder / "file", "new"));
}

}  // namespace
}  // namespace vosmere::test
