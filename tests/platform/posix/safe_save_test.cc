// What a safe save preserves on Linux: links, owner and permissions.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
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

TEST(SafeSaveOnLinux, ReplacesAFileThatMayBeWrittenAndNotRead) {
  const TempFolder folder;
  const std::filesystem::path path = folder / "file";
  WriteBytes(path, "old");
  chmod(path.c_str(), 0200);
  const bool isRoot = geteuid() == 0;  // who may read everything
  constexpr uid_t kNobody = 65534;
  ASSERT_TRUE(!isRoot || (chown(path.c_str(), kNobody, getegid()) == 0 &&
                          chmod(path.parent_path().c_str(), 0777) == 0 && seteuid(kNobody) == 0));
  DocumentError error;
  const bool saved = Save(path, "new", &error);
  ASSERT_TRUE(!isRoot || seteuid(0) == 0);
  EXPECT_TRUE(saved) << error.reason;
  struct stat status;
  ASSERT_TRUE(stat(path.c_str(), &status) == 0 && (status.st_mode & 07777) == 0200);
  chmod(path.c_str(), 0600);
  EXPECT_EQ(ReadBytes(path), "new");
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

TEST(SafeSaveOnLinux, AProgramThatRunsIsNotReplaced) {
  const TempFolder folder;
  const std::string path = folder / "program";
  std::filesystem::copy_file("/bin/sleep", path);
  std::string seconds = "60";
  char* arguments[] = {seconds.data(), seconds.data(), nullptr};
  pid_t child;
  ASSERT_EQ(posix_spawn(&child, path.c_str(), nullptr, nullptr, arguments, nullptr), 0);
  DocumentError error;
  EXPECT_FALSE(Save(path, "new", &error));
  EXPECT_STREQ(error.reason, "cannot be written: Text file busy");
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

}  // namespace
}  // namespace vosmere::test
