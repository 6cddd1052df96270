// Files, as far as the library needs them: one handle type that closes itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "vosmere/base/file_piece.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Whether a file may make its user wait: for the other end of a pipe, for the user of a terminal.
/// Opening never waits, whatever the path names.
enum class Waiting {
  /// A pipe does not open, nor on Windows any other device (a file named "nul.html" would be one);
  /// elsewhere a device that has nothing to give or no room at the moment fails.
  kNever,
  /// Reading waits for what comes, writing for room.
  kAllowed,
};

/// One open file. Operations return false on failure and leave the system's error number (errno
/// values on Linux, GetLastError values on Windows) in `error()`.
///
/// Paths are zero-terminated UTF-16. On Linux they become UTF-8 and a backslash separates like a
/// slash, so that a path written on one system opens on the other. Names that this cannot say have
/// paths, too (platform/path.h).
class File {
 public:
  File() = default;
  File(File&& other) noexcept
      : handle_(std::exchange(other.handle_, kNone)), error_(other.error_) {}
  File& operator=(File&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(error_, other.error_);
    return *this;
  }
  ~File() { Close(); }

  /// For reading; others may read, too. A directory fails here.
  bool Open(const WChar* path, Waiting waiting = Waiting::kNever);
  /// For writing; an existing file is cut to nothing first. Others may read meanwhile.
  bool Create(const WChar* path, Waiting waiting = Waiting::kNever);
  /// For writing over what an existing file holds, from its beginning.
  bool OpenOrCreate(const WChar* path, Waiting waiting = Waiting::kNever);

  /// Reads up to `capacity` bytes; `*got` is 0 at the end.
  bool Read(void* bytes, std::size_t capacity, std::size_t* got);
  /// Reads until `capacity` bytes are there or the file ends; `*got` tells how many there are, also
  /// on failure.
  bool ReadFully(void* bytes, std::size_t capacity, std::size_t* got) {
    for (*got = 0; *got < capacity;) {
      std::size_t part = 0;
      if (!Read(static_cast<char*>(bytes) + *got, capacity - *got, &part)) return false;
      if (part == 0) break;
      *got += part;
    }
    return true;
  }
  /// Writes all pieces in order, whatever number of system calls that takes.
  bool Write(const FilePiece* pieces, std::size_t count);
  /// Length in bytes.
  bool Size(std::uint64_t* size);

  /// The file is closed in any case. False when the system could not store what was written:
  /// network disks and quotas say so only now. True when none is open.
  bool Close();
  bool IsOpen() const { return handle_ != kNone; }
  ULONG error() const { return error_; }

 private:
  friend class FileMapping;
  static constexpr std::intptr_t kNone = -1;
  /// What every opening ends with: the handle is one that `waiting` admits, or none.
  bool Admit(Waiting waiting);
  bool Fail();

  std::intptr_t handle_ = kNone;
  ULONG error_ = 0;
};

/// A whole open file as memory to be read; the file may be closed meanwhile. On Linux others may
/// cut the file short, and reading what is no longer there then raises SIGBUS (CopyUnlessGone does
/// not).
class FileMapping {
 public:
  FileMapping() = default;
  FileMapping(const FileMapping&) = delete;
  FileMapping& operator=(const FileMapping&) = delete;
  ~FileMapping() { Close(); }

  // Both once, in this order. False leaves the reason in `error()`, as the file's.

  /// As long as the file is now; a file without contents can be mapped, too.
  bool Create(const File& file);
  bool View();

  const char* data() const { return static_cast<const char*>(view_); }
  std::uint64_t size() const { return size_; }
  /// Gives the memory of a part that was read back to the system; it can still be read.
  void Forget(std::size_t position, std::size_t size);

  void Close();
  ULONG error() const { return error_; }

 private:
  bool Fail();

  [[maybe_unused]] std::intptr_t handle_ = File::kNone;  // where a mapping has one
  const void* view_ = nullptr;
  std::uint64_t size_ = 0;
  ULONG error_ = 0;
};

/// Copies memory that may be a file's. False where it is gone, as the file was cut short.
bool CopyUnlessGone(void* to, const void* from, std::size_t size);

/// The number that Windows has for an `error()`.
ULONG WindowsError(ULONG error);

}  // namespace vosmere
