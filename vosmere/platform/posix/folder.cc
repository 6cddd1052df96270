// FolderListing with readdir.
#include "vosmere/platform/internal/folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <new>
#include <string_view>

#include "vosmere/platform/posix/path.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere {
namespace {

/// The result of a system call. Throws std::bad_alloc when the system ran out of memory, so that
/// this is not taken for a missing file.
bool Succeeded(bool succeeded) {
  if (!succeeded && errno == ENOMEM) throw std::bad_alloc();
  return succeeded;
}

/// Follows symbolic links.
bool IsDirectory(DIR* folder, const char* name) {
  struct stat status;
  return Succeeded(fstatat(dirfd(folder), name, &status, 0) == 0) && S_ISDIR(status.st_mode);
}

bool IsSymbolicLink(DIR* folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_LNK;
  struct stat status;
  return Succeeded(fstatat(dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) &&
         S_ISLNK(status.st_mode);
}

}  // namespace

struct FolderListing::Search {
  explicit Search(const char* name) : folder(opendir(name)) {}
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  ~Search() {
    if (folder) closedir(folder);
  }

  DIR* folder;
};

FolderListing::FolderListing() = default;
FolderListing::~FolderListing() = default;

bool FolderListing::Open(const WChar* path) {
  char name[PATH_MAX];
  if (!NativePath(path, name)) return false;
  search_ = std::make_unique<Search>(name);
  return Succeeded(search_->folder != nullptr);
}

bool FolderListing::Next() {
  if (!search_ || !search_->folder) return false;
  DIR* const folder = search_->folder;
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(folder);
    if (!entry) break;
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    const std::size_t length = PathOfName(name, name_, kNameLimit - 1);
    if (length == utf8::kNoRoom) continue;
    name_[length] = 0;
    // Most file systems give the type with the name, which saves asking for each entry.
    isLink_ = IsSymbolicLink(folder, *entry);
    isFolder_ =
        entry->d_type == DT_DIR || (entry->d_type != DT_REG && IsDirectory(folder, entry->d_name));
    return true;
  }
  failed_ = !Succeeded(errno == 0);
  return false;
}

}  // namespace vosmere
