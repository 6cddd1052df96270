#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <vector>

#include "vosmere/platform/internal/disk.h"
#include "vosmere/platform/internal/disk_calls.h"
#include "vosmere/platform/posix/path.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere {
namespace {

constexpr std::size_t kBlock = 1 << 20;  // written at once

/// The error number of a call that returns -1 for failure.
ULONG ErrorOf(ssize_t result) {
  return result < 0 ? static_cast<ULONG>(errno) : 0;
}

int Descriptor(disk_calls::Handle handle) {
  return static_cast<int>(handle);
}

/// Calls `use` with the system's name for a path.
template <class Use>
ULONG WithName(const WChar* path, Use use) {
  char name[PATH_MAX];
  return NativePath(path, name) ? ErrorOf(use(name)) : static_cast<ULONG>(errno);
}

/// Copies the access list, if the file has one and the file system has such lists.
ULONG TakeOverAccessList(int from, int to) {
  constexpr const char* kName = "system.posix_acl_access";
  const ssize_t size = fgetxattr(from, kName, nullptr, 0);
  if (size < 0) return errno == ENODATA || errno == ENOTSUP ? 0 : static_cast<ULONG>(errno);
  std::vector<char> list(static_cast<std::size_t>(size));
  const ssize_t got = fgetxattr(from, kName, list.data(), list.size());
  return got < 0 ? ErrorOf(got)
                 : ErrorOf(fsetxattr(to, kName, list.data(), static_cast<std::size_t>(got), 0));
}

}  // namespace

namespace disk_calls {

ULONG Open(const WChar* path, Opening opening, Handle* handle) {
  int flags = opening == Opening::kToRead   ? O_RDONLY
              : opening == Opening::kToHold ? O_WRONLY
                                            : O_RDWR;
  if (opening == Opening::kNew || opening == Opening::kNewPrivate) flags |= O_CREAT | O_EXCL;
  const mode_t mode = opening == Opening::kNewPrivate ? 0600 : 0666;
  int file = -1;
  const ULONG error = WithName(path, [&](const char* name) {
    return file = open(name, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
  });
  if (error) return error;
  struct stat status;
  ULONG refused = ErrorOf(fstat(file, &status));
  if (!refused && !S_ISREG(status.st_mode)) refused = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  if (refused)
    close(file);
  else
    *handle = file;
  return refused;
}

ULONG WriteAt(Handle file, std::uint64_t position, const void* bytes, std::size_t size,
              std::size_t* written) {
  const auto place = static_cast<off_t>(position);
  const ssize_t count = pwrite(Descriptor(file), bytes, std::min(size, kBlock), place);
  *written = count < 0 ? 0 : static_cast<std::size_t>(count);
  // Lets the disk begin to write this while the rest is handed over. Flush waits for it.
  if (*written == kBlock)
    sync_file_range(Descriptor(file), place, static_cast<off_t>(kBlock), SYNC_FILE_RANGE_WRITE);
  return ErrorOf(count);
}

ULONG ReadAt(Handle file, std::uint64_t position, void* bytes, std::size_t capacity,
             std::size_t* got) {
  const ssize_t count = pread(Descriptor(file), bytes, capacity, static_cast<off_t>(position));
  *got = count < 0 ? 0 : static_cast<std::size_t>(count);
  return ErrorOf(count);
}

ULONG Flush(Handle file) {
  return ErrorOf(fsync(Descriptor(file)));
}

ULONG Size(Handle file, std::uint64_t* size) {
  struct stat status;
  if (fstat(Descriptor(file), &status) != 0) return ErrorOf(-1);
  *size = static_cast<std::uint64_t>(status.st_size);
  return 0;
}

ULONG Close(Handle file) {
  return ErrorOf(close(Descriptor(file)));
}

ULONG TryLock(Handle file, bool* locked) {
  *locked = flock(Descriptor(file), LOCK_EX | LOCK_NB) == 0;
  return *locked || errno == EWOULDBLOCK ? 0 : ErrorOf(-1);
}

ULONG IsAt(Handle file, const WChar* path, bool* isAt) {
  struct stat here, there = {};
  if (fstat(Descriptor(file), &here) != 0) return ErrorOf(-1);
  const ULONG error = WithName(path, [&](const char* name) { return stat(name, &there); });
  *isAt = error == 0 && here.st_dev == there.st_dev && here.st_ino == there.st_ino;
  return IsNotThere(error) ? 0 : error;
}

// Owner and group come first, because changing them removes permissions. If the group cannot be
// kept, the group's permissions become those of everybody else, which are no more than the old file
// gave.
ULONG TakeOverRights(Handle from, Handle to) {
  struct stat old, now;
  if (fstat(Descriptor(from), &old) != 0) return ErrorOf(-1);
  if (fchown(Descriptor(to), old.st_uid, old.st_gid) != 0 &&
      fchown(Descriptor(to), static_cast<uid_t>(-1), old.st_gid) != 0 && errno != EPERM)
    return ErrorOf(-1);
  if (fstat(Descriptor(to), &now) != 0) return ErrorOf(-1);
  mode_t mode = old.st_mode & 07777;
  const bool keptGroup = now.st_gid == old.st_gid;
  if (!keptGroup) mode = (mode & 0707) | ((mode & 0007) << 3);
  if (now.st_uid != old.st_uid) mode &= 0777;
  if (fchmod(Descriptor(to), mode) != 0) return ErrorOf(-1);
  return keptGroup ? TakeOverAccessList(Descriptor(from), Descriptor(to)) : 0;
}

ULONG Replace(const WChar* from, const WChar* to) {
  return WithName(from, [&](const char* source) {
    char target[PATH_MAX];
    return NativePath(to, target) ? rename(source, target) : -1;
  });
}

// If the file system cannot rename without replacing, a second link and removing the first do the
// same.
ULONG MoveNew(const WChar* from, const WChar* to) {
  return WithName(from, [&](const char* source) {
    char target[PATH_MAX];
    if (!NativePath(to, target)) return -1;
    const int moved = renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE);
    if (moved == 0 || (errno != EINVAL && errno != ENOSYS)) return moved;
    return link(source, target) == 0 ? unlink(source) : -1;
  });
}

ULONG Remove(const WChar* path) {
  return WithName(path, [](const char* name) { return unlink(name); });
}

ULONG MakeFolder(const WChar* path) {
  return WithName(path, [](const char* name) {
    struct stat status;
    if (mkdir(name, 0777) == 0) return 0;
    const bool isThere = errno == EEXIST && stat(name, &status) == 0 && S_ISDIR(status.st_mode);
    if (!isThere && errno == 0) errno = EEXIST;
    return isThere ? 0 : -1;
  });
}

// Some file systems cannot flush a folder and report that.
ULONG FlushFolder(const WChar* path) {
  int folder = -1;
  const ULONG error = WithName(path, [&](const char* name) {
    return folder = open(name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  });
  if (error) return error;
  const ULONG flushed = ErrorOf(fsync(folder));
  close(folder);
  return flushed == EINVAL || flushed == EROFS ? 0 : flushed;
}

bool IsInterrupted(ULONG error) {
  return error == EINTR;
}

ULONG NoProgress() {
  return EIO;
}

}  // namespace disk_calls

namespace {

/// Sets `*path` to the path of a file name.
void SetPath(std::string_view name, PathText* path) {
  path->resize(name.size());
  const std::size_t units = PathOfName(name, path->data(), path->size());
  path->resize(units == utf8::kNoRoom ? 0 : units);
}

/// The target of a path that does not exist: its folder does.
ULONG TargetOfNothing(const char* name, PathText* target, PathKind* kind) {
  struct stat status;
  *kind = lstat(name, &status) == 0 ? PathKind::kLinkToNothing : PathKind::kNothing;
  if (*kind == PathKind::kLinkToNothing) return 0;
  const std::string_view whole(name);
  const std::size_t slash = whole.rfind('/');
  const std::string folder(slash == whole.npos ? "." : whole.substr(0, slash + 1));
  char resolved[PATH_MAX];
  if (!realpath(folder.c_str(), resolved)) return ErrorOf(-1);
  const std::string_view parent(resolved);
  SetPath(std::string(parent == "/" ? "" : parent) + "/" +
              std::string(slash == whole.npos ? whole : whole.substr(slash + 1)),
          target);
  return 0;
}

}  // namespace

ULONG FindTarget(const WChar* path, PathText* target, PathKind* kind) {
  char name[PATH_MAX], resolved[PATH_MAX];
  if (!NativePath(path, name)) return ErrorOf(-1);
  if (!realpath(name, resolved)) {
    return errno == ENOENT ? TargetOfNothing(name, target, kind) : ErrorOf(-1);
  }
  struct stat status;
  if (stat(resolved, &status) != 0) return ErrorOf(-1);
  *kind = S_ISREG(status.st_mode)   ? PathKind::kFile
          : S_ISDIR(status.st_mode) ? PathKind::kFolder
                                    : PathKind::kOther;
  SetPath(resolved, target);
  return 0;
}

bool IsNotThere(ULONG error) {
  return error == ENOENT || error == ENOTDIR;
}

bool IsAlreadyThere(ULONG error) {
  return error == EEXIST;
}

bool HasNoLocks(ULONG error) {
  return error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS;
}

std::string SystemMessage(ULONG error) {
  return std::generic_category().message(static_cast<int>(error));
}

}  // namespace vosmere
