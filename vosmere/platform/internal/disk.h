// Files that must survive a crash: creating, locking, writing, flushing, renaming and removing
// them.
//
// Every call that changes the disk goes through one place, where tests can watch it, make it fail
// or end the process. Paths follow the rules of File (file.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "vosmere/base/file_piece.h"
#include "vosmere/base/types.h"

namespace vosmere {

using PathText = std::basic_string<WChar>;

/// A call that changes the disk, or takes a lock, as tests see it.
struct DiskCall {
  enum Kind {
    kCreate,  ///< a new, empty file
    kTakeOver,
    kWrite,
    kFlush,
    kClose,  ///< of a file that was written to
    kReplace,
    kMoveNew,
    kRemove,
    kMakeFolder,
    kFlushFolder,
    kLock,
  };
  Kind kind;
  const WChar* path;
  const WChar* to = nullptr;       ///< for kReplace and kMoveNew
  FilePiece bytes = {nullptr, 0};  ///< for kWrite
  std::uint64_t position = 0;      ///< for kWrite
};

/// Called for every such call of the process, on any thread.
class DiskWatch {
 public:
  virtual ~DiskWatch() = default;
  /// A result other than 0 is an error number: the call fails with it and is not made. A write is
  /// limited to `*most` bytes; any other call is not made, but succeeds, if `*most` is set to 0.
  virtual ULONG Before(const DiskCall& call, std::size_t* most) = 0;
  virtual void After(const DiskCall& call, ULONG error) = 0;
};
/// Sets the watch; null removes it. The disk must not be in use meanwhile.
void WatchDiskForTesting(DiskWatch* watch);

/// A file that is open for reading, or also for writing at its end. Other programs may read, write,
/// rename and remove it meanwhile, on every system. Operations return false on failure and leave
/// the system's error number in `error()`.
class DiskFile {
 public:
  DiskFile() = default;
  DiskFile(DiskFile&& other) noexcept { *this = std::move(other); }
  DiskFile& operator=(DiskFile&& other) noexcept;
  ~DiskFile() { Close(); }

  /// Opens an existing file. Fails for a folder, a pipe and a device.
  bool OpenToRead(const WChar* path);
  /// The same, also for writing at its end.
  bool OpenToUpdate(const WChar* path);
  /// The same, for locking a file while it is replaced; the file need not be readable. Fails if it
  /// cannot be written; on Windows, replacing it fails instead.
  bool OpenToHold(const WChar* path);
  /// Creates a file for reading and writing; fails if it exists. If it is private, only this user
  /// can read it; on Windows this makes no difference.
  bool CreateNew(const WChar* path, bool isPrivate);

  /// Does not wait. False without an error when another program holds the lock. The lock is
  /// released when the file is closed, also by the end of the process.
  bool TryLock();
  /// Whether the path still refers to this file.
  bool IsAt(const WChar* path);
  /// Takes over owner, group and permissions of the other file. If the system does not let this
  /// user do that, nobody gets more permissions than before. Does nothing on Windows, where
  /// replacing a file does it.
  bool TakeOverRights(const DiskFile& other);

  bool ReadAt(std::uint64_t position, void* bytes, std::size_t capacity, std::size_t* got);
  /// Appends all bytes, with as many calls as that takes.
  bool Write(const void* bytes, std::size_t size);
  /// Waits until the disk has stored what was written.
  bool Flush();
  bool Size(std::uint64_t* size);
  /// Closes the file, which is closed even on failure. False when the system could not store what
  /// was written.
  bool Close();

  bool IsOpen() const { return handle_ != kNone; }
  ULONG error() const { return error_; }

 private:
  static constexpr std::intptr_t kNone = -1;
  template <class Opening>
  bool Open(const WChar* path, Opening opening);
  bool Opened(std::intptr_t handle, const WChar* path);
  bool Keep(ULONG error);

  std::intptr_t handle_ = kNone;
  PathText path_;
  std::uint64_t end_ = 0;
  bool written_ = false;
  ULONG error_ = 0;
};

// Each of these returns the system's error number, 0 for success.

/// Renames `from` to `to`, replacing a file of that name. At every moment either the old or the new
/// one is there.
ULONG ReplaceDiskFile(const WChar* from, const WChar* to);
/// Renames `from` to `to`; an error if `to` exists.
ULONG MoveToNewPlace(const WChar* from, const WChar* to);
ULONG RemoveDiskFile(const WChar* path);
/// Succeeds if the folder exists.
ULONG MakeFolder(const WChar* path);
/// Waits until the disk has stored which files were created, renamed and removed in the folder.
/// Does not wait on Windows, which has no call for it.
ULONG FlushFolder(const WChar* path);

enum class PathKind { kNothing, kFile, kFolder, kOther, kLinkToNothing };
/// Finds out what a path refers to, and stores the path without links in `*target`, which need not
/// exist. Links in a circle are an error.
ULONG FindTarget(const WChar* path, PathText* target, PathKind* kind);

// For the error numbers of this system.
bool IsNotThere(ULONG error);
bool IsAlreadyThere(ULONG error);
/// Whether TryLock failed because the file system has no locks.
bool HasNoLocks(ULONG error);
/// The message in UTF-8, without a full stop.
std::string SystemMessage(ULONG error);

/// The position after the last separator, between "folder/" and "name".
std::size_t NameStart(const PathText& path);

}  // namespace vosmere
