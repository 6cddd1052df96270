// Writing plain files, as bytes or as UTF-8 text.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

namespace vosmere {

class File;

/// Writes a plain file: bytes, or text as UTF-8 without a byte-order mark. Writes continue where
/// the previous one ended.
///
/// A write that returns true has handed all its bytes to the system; one that returns false may
/// have written a part of them. Some file systems report a full disk only when the file is closed,
/// so check the result of CloseFile, too. No call ever waits: a pipe cannot be opened, nor can a
/// device on Windows; on Linux a device takes as much as it has room for. Not thread-safe.
class VOSMERE_API CWriteFile {
 public:
  CWriteFile();
  CWriteFile(const CWriteFile&) = delete;
  CWriteFile& operator=(const CWriteFile&) = delete;
  virtual ~CWriteFile();

  // Both open for writing, close the file that was open before in any case, and allow others to
  // read meanwhile. They return false when the file cannot be opened, for a directory, and for
  // null. To get the result of closing the previous file, call CloseFile first.

  /// Creates the file; an existing one is truncated.
  bool OpenFile(const WChar* path);
  /// Creates the file; an existing one keeps its contents.
  /// Intended: despite the name, writing starts at the beginning of the file and overwrites its
  /// first bytes. It is meant for renewing the head of a file. No function here adds at the end.
  bool OpenFileAppend(const WChar* path);
  /// Returns false when the system could not store what was written; true when no file is open. The
  /// destructor closes the file, too, but cannot report a failure.
  bool CloseFile();

  /// Writes a null-terminated text as UTF-8. Returns false for the empty text, for null, and when
  /// memory runs out.
  bool WriteData(const WChar* text);
  /// Writes `count` bytes. Returns false, with nothing written, when `count` is negative or above
  /// 200,000,000.
  bool WriteStreamData(const void* bytes, int count);

  /// The system's error number for the last failure since the last open call began: errno on Linux,
  /// GetLastError on Windows; 0 when the failure was not the system's.
  ULONG SystemError() const { return systemError_; }

 protected:
  /// WriteStreamData without the limit.
  bool Write(const void* bytes, std::size_t count);

 private:
  /// Opens a new file with `open` in place of the current one.
  template <class Open>
  bool OpenWith(Open open);
  bool Fail(const File& file);

  OwnedPointer<File> file_;  // null when no file is open
  ULONG systemError_ = 0;
};

}  // namespace vosmere
