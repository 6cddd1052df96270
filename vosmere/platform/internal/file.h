// File and FileMapping: the file operations that the library needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "vosmere/base/file_piece.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Whether operations on a file may block: on the other end of a pipe, or on the user of a
/// terminal. Opening never blocks, whatever the path names.
enum class Waiting {
  /// Pipes cannot be opened, and on Windows no other device either: a file named "nul.html" would
  /// be one. On other systems, reading a device that has no data at the moment and writing to one
  /// that has no room fail.
  kNever,
  /// Reading blocks until there is data, writing until there is room.
  kAllowed,
};

/// One open file, which the destructor closes. Operations return false on failure and leave the
/// system's error number in `error()`: errno values on Linux, GetLastError values on Windows. Not
/// thread-safe.
///
/// Paths are null-terminated UTF-16. On Linux they are converted to UTF-8, and a backslash is a
/// separator like a slash, so that a path written on one system opens on the other. File names that
/// UTF-8 paths cannot express have paths too (platform/path.h).
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

  /// Opens a file for reading; other programs may read it at the same time. Fails for a directory.
  /// Like the other operations that open, it first closes the file that is open.
  bool Open(const WChar* path, Waiting waiting = Waiting::kNever);
  /// Creates a file for writing; an existing file is truncated first. Other programs may read it
  /// meanwhile.
  bool Create(const WChar* path, Waiting waiting = Waiting::kNever);
  /// Opens or creates a file for writing from its beginning; an existing file is not truncated.
  bool OpenOrCreate(const WChar* path, Waiting waiting = Waiting::kNever);

  /// Reads up to `capacity` bytes; `*got` is 0 at the end of the file.
  bool Read(void* bytes, std::size_t capacity, std::size_t* got);
  /// Reads until `capacity` bytes have been read or the file ends. `*got` receives the number of
  /// bytes read, also on failure.
  bool ReadFully(void* bytes, std::size_t capacity, std::size_t* got) {
    for (*got = 0; *got < capacity;) {
      std::size_t part = 0;
      if (!Read(static_cast<char*>(bytes) + *got, capacity - *got, &part)) return false;
      if (part == 0) break;
      *got += part;
    }
    return true;
  }
  /// Writes all pieces in order, with as many system calls as that takes.
  bool Write(const FilePiece* pieces, std::size_t count);
  /// Stores the file's length in bytes.
  bool Size(std::uint64_t* size);

  /// Closes the file, which is closed even on failure. False when the system could not store what
  /// was written: network disks and quotas report that only here. True when no file is open.
  bool Close();
  bool IsOpen() const { return handle_ != kNone; }
  ULONG error() const { return error_; }

 private:
  friend class FileMapping;
  static constexpr std::intptr_t kNone = -1;
  /// The last step of every opening: closes the handle again if `waiting` does not allow it.
  bool Admit(Waiting waiting);
  bool Fail();

  std::intptr_t handle_ = kNone;
  ULONG error_ = 0;
};

/// An open file mapped into memory as a whole, for reading. The file may be closed meanwhile. On
/// Linux another program may truncate the file, and reading memory beyond the new end then raises
/// SIGBUS; CopyUnlessGone is safe.
class FileMapping {
 public:
  FileMapping() = default;
  FileMapping(const FileMapping&) = delete;
  FileMapping& operator=(const FileMapping&) = delete;
  ~FileMapping() { Close(); }

  // Call Create and View once each, in this order. On failure they return false and leave the
  // reason in `error()`, as File does.

  /// Makes the mapping, with the file's current length. An empty file can be mapped too.
  bool Create(const File& file);
  /// Makes the memory accessible through data().
  bool View();

  const char* data() const { return static_cast<const char*>(view_); }
  std::uint64_t size() const { return size_; }
  /// Gives the memory of a part that was read back to the system. The part can still be read, from
  /// the file again.
  void Forget(std::size_t position, std::size_t size);

  void Close();
  ULONG error() const { return error_; }

 private:
  bool Fail();

  [[maybe_unused]] std::intptr_t handle_ = File::kNone;  // only on systems where a mapping has one
  const void* view_ = nullptr;
  std::uint64_t size_ = 0;
  ULONG error_ = 0;
};

/// Copies memory that may belong to a mapping. False when the file was truncated and the memory no
/// longer exists.
bool CopyUnlessGone(void* to, const void* from, std::size_t size);

/// Converts a number from `error()` to the Windows error with that meaning.
ULONG WindowsError(ULONG error);

}  // namespace vosmere
