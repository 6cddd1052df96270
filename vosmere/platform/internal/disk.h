// Files that must survive a crash: what is made, locked, flushed, renamed and removed on a disk.
//
// Every call that changes the disk goes through one place, where tests can see it, make it fail or
// let the process end. Paths are read as File reads them (file.h).
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
    kCreate,  ///< an empty file that was not there
    kTakeOver,
    kWrite,
    kFlush,
    kClose,  ///< of a file that was written
    kReplace,
    kMoveNew,
    kRemove,
    kMakeFolder,
    kFlushFolder,
    kLock,
  };
  Kind kind;
  const WChar* path;
  const WChar* to = nullptr;       ///< of kReplace and kMoveNew
  FilePiece bytes = {nullptr, 0};  ///< of kWrite
  std::uint64_t position = 0;      ///< of kWrite
};

/// Sees every such call of the process, from any thread.
class DiskWatch {
 public:
  virtual ~DiskWatch() = default;
  /// An error number makes the call fail with it, without being made; 0 lets it happen. A write
  /// takes at most `*most` bytes; another call with a `*most` of 0 counts as done without being
  /// made.
  virtual ULONG Before(const DiskCall& call, std::size_t* most) = 0;
  virtual void After(const DiskCall& call, ULONG error) = 0;
};
/// Null ends it. Nothing may be at work on the disk meanwhile.
void WatchDiskForTesting(DiskWatch* watch);

/// A file open for reading, or a new one for reading and writing at its end. Others may read,
/// write, rename and remove it meanwhile, on every system. Operations return false on failure and
/// leave the system's error number in `error()`.
class DiskFile {
 public:
  DiskFile() = default;
  DiskFile(DiskFile&& other) noexcept { *this = std::move(other); }
  DiskFile& operator=(DiskFile&& other) noexcept;
  ~DiskFile() { Close(); }

  /// An existing file. A folder, a pipe or a device fails.
  bool OpenToRead(const WChar* path);
  /// The same, for writing at its end.
  bool OpenToUpdate(const WChar* path);
  /// The same, for being locked while it is replaced; it may not be readable then. Fails where the
  /// file may not be written; on Windows the replacing does.
  bool OpenToHold(const WChar* path);
  /// A file that was not there, to read and write. Nobody else may read it where it is private, as
  /// far as the system knows such a thing.
  bool CreateNew(const WChar* path, bool isPrivate);

  /// Never waits. False without an error when somebody else holds the lock. A lock ends with the
  /// file's handle, also when the process does.
  bool TryLock();
  /// Whether the path still leads to this file.
  bool IsAt(const WChar* path);
  /// Takes over whom the other file belongs to, and who may do what with it; what the system does
  /// not let this user take over leaves nobody with more rights than they had. On Windows nothing:
  /// replacing does it.
  bool TakeOverRights(const DiskFile& other);

  bool ReadAt(std::uint64_t position, void* bytes, std::size_t capacity, std::size_t* got);
  /// All of the bytes at the end of the file, in however many calls.
  bool Write(const void* bytes, std::size_t size);
  /// Until the disk has what was written.
  bool Flush();
  bool Size(std::uint64_t* size);
  /// The file is closed in any case. False when the system could not store what was written.
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

// Each returns the system's error number, 0 for success.

/// `from` takes the place of `to`, which it may have or not: at every moment one of them is there.
ULONG ReplaceDiskFile(const WChar* from, const WChar* to);
/// The same where `to` is not there; an error where it is.
ULONG MoveToNewPlace(const WChar* from, const WChar* to);
ULONG RemoveDiskFile(const WChar* path);
/// One that is there already is fine.
ULONG MakeFolder(const WChar* path);
/// Until the disk has what was made, renamed and removed in the folder.
ULONG FlushFolder(const WChar* path);

enum class PathKind { kNothing, kFile, kFolder, kOther, kLinkToNothing };
/// What a path leads to, and where to once links are followed; `*target` need not exist. Links in a
/// circle are an error.
ULONG FindTarget(const WChar* path, PathText* target, PathKind* kind);

// Error numbers of this system.
bool IsNotThere(ULONG error);
bool IsAlreadyThere(ULONG error);
/// Whether TryLock failed because the file system has no locks.
bool HasNoLocks(ULONG error);
/// In UTF-8, without a full stop.
std::string SystemMessage(ULONG error);

/// Splits before the last separator: "folder/" and "name".
std::size_t NameStart(const PathText& path);

}  // namespace vosmere
