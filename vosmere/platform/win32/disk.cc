#include <algorithm>
#include <string>
#include <system_error>
#include <vector>

#include "vosmere/platform/internal/disk.h"
#include "vosmere/platform/internal/disk_calls.h"
#include "vosmere/platform/win32/com.h"

namespace vosmere {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t kMostAtOnce = 1 << 30;  // the count of a call has 32 bits
// Locks on Windows keep others from reading the locked bytes, so a position after the end of any
// file is locked.
constexpr DWORD kLockedAt = 0x7FFFFFFF;

HANDLE Native(disk_calls::Handle handle) {
  return reinterpret_cast<HANDLE>(handle);
}

ULONG ErrorOf(BOOL succeeded) {
  if (succeeded) return 0;
  const DWORD error = ::GetLastError();
  return error ? error : ERROR_GEN_FAILURE;
}

OVERLAPPED At(std::uint64_t position) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(position);
  place.OffsetHigh = static_cast<DWORD>(position >> 32);
  return place;
}

DWORD Part(std::size_t size) {
  return static_cast<DWORD>(std::min(size, kMostAtOnce));
}

/// Retries for a moment, because virus scanners and indexers open new files for a short time.
template <class Make>
ULONG WhileInUse(Make make) {
  constexpr int kTries = 20;
  ULONG error = ErrorOf(make());
  for (int i = 1; i < kTries && (error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
                                 error == ERROR_UNABLE_TO_REMOVE_REPLACED);
       ++i) {
    ::Sleep(static_cast<DWORD>(i));
    error = ErrorOf(make());
  }
  return error;
}

bool IsFolder(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

}  // namespace

namespace disk_calls {

ULONG Open(const WChar* path, Opening opening, Handle* handle) {
  const bool isNew = opening == Opening::kNew || opening == Opening::kNewPrivate;
  const bool isRead = opening == Opening::kToRead || opening == Opening::kToHold;
  const DWORD access = isRead ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
  const HANDLE file =
      ::CreateFileW(win32::Native(path), access, kShareAll, nullptr,
                    isNew ? CREATE_NEW : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return ErrorOf(FALSE);
  if (::GetFileType(file) != FILE_TYPE_DISK) {
    ::CloseHandle(file);
    return ERROR_BAD_FILE_TYPE;
  }
  *handle = reinterpret_cast<Handle>(file);
  return 0;
}

ULONG WriteAt(Handle file, std::uint64_t position, const void* bytes, std::size_t size,
              std::size_t* written) {
  OVERLAPPED place = At(position);
  DWORD count = 0;
  const ULONG error = ErrorOf(::WriteFile(Native(file), bytes, Part(size), &count, &place));
  *written = count;
  return error;
}

ULONG ReadAt(Handle file, std::uint64_t position, void* bytes, std::size_t capacity,
             std::size_t* got) {
  OVERLAPPED place = At(position);
  DWORD count = 0;
  const ULONG error = ErrorOf(::ReadFile(Native(file), bytes, Part(capacity), &count, &place));
  *got = count;
  return error == ERROR_HANDLE_EOF ? 0 : error;
}

ULONG Flush(Handle file) {
  return ErrorOf(::FlushFileBuffers(Native(file)));
}

ULONG Size(Handle file, std::uint64_t* size) {
  LARGE_INTEGER length;
  if (!::GetFileSizeEx(Native(file), &length)) return ErrorOf(FALSE);
  *size = static_cast<std::uint64_t>(length.QuadPart);
  return 0;
}

ULONG Close(Handle file) {
  return ErrorOf(::CloseHandle(Native(file)));
}

ULONG TryLock(Handle file, bool* locked) {
  OVERLAPPED place = {};
  place.OffsetHigh = kLockedAt;
  *locked = ::LockFileEx(Native(file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                         &place);
  if (*locked) return 0;
  const ULONG error = ErrorOf(FALSE);
  return error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING ? 0 : error;
}

ULONG IsAt(Handle file, const WChar* path, bool* isAt) {
  BY_HANDLE_FILE_INFORMATION here, there;
  *isAt = false;
  if (!::GetFileInformationByHandle(Native(file), &here)) return ErrorOf(FALSE);
  const HANDLE other = ::CreateFileW(win32::Native(path), 0, kShareAll, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
  if (other == INVALID_HANDLE_VALUE) {
    const ULONG error = ErrorOf(FALSE);
    return IsNotThere(error) || error == ERROR_ACCESS_DENIED ? 0 : error;
  }
  const ULONG error = ErrorOf(::GetFileInformationByHandle(other, &there));
  ::CloseHandle(other);
  *isAt = error == 0 && here.dwVolumeSerialNumber == there.dwVolumeSerialNumber &&
          here.nFileIndexHigh == there.nFileIndexHigh && here.nFileIndexLow == there.nFileIndexLow;
  return error;
}

ULONG TakeOverRights(Handle, Handle) {
  return 0;
}

// Replacing keeps the permissions and attributes of the old file. If there is none, the file is
// moved, which is on the disk when the call returns.
ULONG Replace(const WChar* from, const WChar* to) {
  const ULONG replaced = WhileInUse([&] {
    return ::ReplaceFileW(win32::Native(to), win32::Native(from), nullptr,
                          REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr);
  });
  if (replaced != ERROR_FILE_NOT_FOUND) return replaced;
  return WhileInUse([&] {
    return ::MoveFileExW(win32::Native(from), win32::Native(to), MOVEFILE_WRITE_THROUGH);
  });
}

ULONG MoveNew(const WChar* from, const WChar* to) {
  return WhileInUse([&] {
    return ::MoveFileExW(win32::Native(from), win32::Native(to), MOVEFILE_WRITE_THROUGH);
  });
}

ULONG Remove(const WChar* path) {
  return ErrorOf(::DeleteFileW(win32::Native(path)));
}

ULONG MakeFolder(const WChar* path) {
  if (::CreateDirectoryW(win32::Native(path), nullptr)) return 0;
  const ULONG error = ErrorOf(FALSE);
  return error == ERROR_ALREADY_EXISTS && IsFolder(::GetFileAttributesW(win32::Native(path)))
             ? 0
             : error;
}

// Windows writes its folders through a journal, and has no call that waits for it.
ULONG FlushFolder(const WChar* path) {
  return ::GetFileAttributesW(win32::Native(path)) == INVALID_FILE_ATTRIBUTES ? ErrorOf(FALSE) : 0;
}

bool IsInterrupted(ULONG) {
  return false;
}

ULONG NoProgress() {
  return ERROR_WRITE_FAULT;
}

}  // namespace disk_calls

namespace {

/// Removes the prefix of a resolved path if the path means the same without it.
PathText Plain(const std::wstring& path) {
  const std::wstring unc = L"\\\\?\\UNC\\", local = L"\\\\?\\";
  std::wstring plain = path;
  if (path.starts_with(unc))
    plain = L"\\\\" + path.substr(unc.size());
  else if (path.starts_with(local) && path.size() < MAX_PATH)
    plain = path.substr(local.size());
  return PathText(plain.begin(), plain.end());
}

constexpr std::size_t kLongestPath = 32768;

ULONG WholePath(const WChar* path, PathText* target) {
  std::wstring room(kLongestPath, L'\0');
  const DWORD length = ::GetFullPathNameW(win32::Native(path), static_cast<DWORD>(room.size()),
                                          room.data(), nullptr);
  if (length == 0 || length >= room.size()) return ErrorOf(FALSE);
  target->assign(room.begin(), room.begin() + static_cast<std::ptrdiff_t>(length));
  return 0;
}

ULONG ResolvedPath(HANDLE file, PathText* target) {
  std::wstring room(kLongestPath, L'\0');
  const DWORD length =
      ::GetFinalPathNameByHandleW(file, room.data(), static_cast<DWORD>(room.size()), 0);
  if (length == 0 || length >= room.size()) return ErrorOf(FALSE);
  room.resize(length);
  *target = Plain(room);
  return 0;
}

}  // namespace

// Makes the path absolute, because Wine does not replace a file with a relative path.
ULONG FindTarget(const WChar* path, PathText* target, PathKind* kind) {
  const DWORD attributes = ::GetFileAttributesW(win32::Native(path));
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    const ULONG error = ErrorOf(FALSE);
    *kind = PathKind::kNothing;
    return error == ERROR_FILE_NOT_FOUND ? WholePath(path, target) : error;
  }
  *kind = IsFolder(attributes) ? PathKind::kFolder : PathKind::kFile;
  if (!(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) return WholePath(path, target);
  const HANDLE file = ::CreateFileW(win32::Native(path), 0, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return ErrorOf(FALSE);
  const ULONG error = ResolvedPath(file, target);
  ::CloseHandle(file);
  return error;
}

bool IsNotThere(ULONG error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool IsAlreadyThere(ULONG error) {
  return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS;
}

bool HasNoLocks(ULONG error) {
  return error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_FUNCTION;
}

std::string SystemMessage(ULONG error) {
  std::string text = std::system_category().message(static_cast<int>(error));
  while (!text.empty() && (text.back() == '.' || text.back() == '\r' || text.back() == '\n'))
    text.pop_back();
  return text;
}

}  // namespace vosmere
