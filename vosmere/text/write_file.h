#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

namespace vosmere {

class File;

/// Writes a plain file: bytes, or text as UTF-8 without a byte-order mark.
///
/// A write that is true has given all of its bytes to the system; one that is false may have given
/// some of them. Some disks find out only when the file is closed that they have no room for them.
/// Nothing here waits: a pipe does not open, and neither does a device on Windows; elsewhere a
/// device takes what it has room for. One thread at a time.
class VOSMERE_API CWriteFile {
 public:
  CWriteFile();
  CWriteFile(const CWriteFile&) = delete;
  CWriteFile& operator=(const CWriteFile&) = delete;
  virtual ~CWriteFile();

  // Both open for writing, close what was open before in any case, and let others read meanwhile.
  // False for a directory, and for null. Who wants to know how the closing went closes first.

  /// Creates the file, or cuts an existing one to nothing.
  bool OpenFile(const WChar* path);
  /// Creates the file, or leaves what an existing one holds.
  /// Intended: despite its name, writing begins at the start of the file and goes over its first
  /// bytes. It serves to renew the head of a file; nothing here adds at the end.
  bool OpenFileAppend(const WChar* path);
  /// False when the system could not store what was written; true when no file is open.
  bool CloseFile();

  /// Writes a zero-terminated text. False for an empty one and for null, and without memory.
  bool WriteData(const WChar* text);
  /// Writes the bytes as they are. False, with nothing written, for more than 200,000,000 or fewer
  /// than 0.
  bool WriteStreamData(const void* bytes, int count);

  /// The system's reason for the last failure since the last opening began: errno on Linux,
  /// GetLastError on Windows; 0 when it gave none.
  ULONG SystemError() const { return systemError_; }

 protected:
  /// Writes the bytes as they are, however many.
  bool Write(const void* bytes, std::size_t count);

 private:
  /// The file that `open` opens, in the place of the one that was open.
  template <class Open>
  bool OpenWith(Open open);
  bool Fail(const File& file);

  OwnedPointer<File> file_;  // null while none is open
  ULONG systemError_ = 0;
};

}  // namespace vosmere
