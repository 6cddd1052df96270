// Files, as far as the library needs them: one handle type that closes itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "vosmere/base/types.h"

namespace vosmere {

/// A piece of memory to be written.
struct FilePiece {
  const void* data;
  std::size_t size;
};

/// One open file. Operations return false on failure and leave the system's error number (errno
/// values on Linux, GetLastError values on Windows) in `error()`.
///
/// Paths are zero-terminated UTF-16. On Linux they become UTF-8 and a backslash separates like a
/// slash, so that a path written on one system opens on the other.
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

  /// For reading. A directory fails here.
  bool Open(const WChar* path);
  /// For writing; an existing file is cut to nothing first. Others may read meanwhile.
  bool Create(const WChar* path);

  /// Reads up to `capacity` bytes; `*got` is 0 at the end.
  bool Read(void* bytes, std::size_t capacity, std::size_t* got);
  /// Writes all pieces in order, whatever number of system calls that takes.
  bool Write(const FilePiece* pieces, std::size_t count);
  /// Length in bytes.
  bool Size(std::uint64_t* size);

  void Close();
  bool IsOpen() const { return handle_ != kNone; }
  ULONG error() const { return error_; }

 private:
  static constexpr std::intptr_t kNone = -1;
  bool Fail();

  std::intptr_t handle_ = kNone;
  ULONG error_ = 0;
};

}  // namespace vosmere
