// Reading plain files as bytes or as text.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

class File;

/// Reads a plain file, as bytes or as text. Reads continue where the previous one ended.
///
/// No call ever waits. A pipe cannot be opened, nor can a device on Windows; on Linux a device is
/// read as far as it has data, and reading fails when it has none. The system's error number is not
/// kept. Not thread-safe.
class VOSMERE_API CReadFile {
 public:
  CReadFile();
  CReadFile(const CReadFile&) = delete;
  CReadFile& operator=(const CReadFile&) = delete;
  virtual ~CReadFile();

  /// Opens an existing file for reading; others may read it at the same time. The file that was
  /// open before is closed in any case. Returns false when the file cannot be opened, for a
  /// directory, and for null.
  bool OpenFile(const WChar* path);
  /// Does nothing when no file is open. The destructor closes the file, too.
  void CloseFile();

  /// The path of the last call of OpenFile, whether or not that succeeded; null before the first
  /// call. Owned by this object.
  WChar* GetFileName() const { return fileName_.get(); }

  /// The low 32 bits of the file's size in bytes; all bits set when no file is open or the system
  /// does not report a size.
  ULONG GetFileSize() const;

  /// Reads up to `count` bytes and returns how many were read; 0 at the end of the file, when the
  /// first read fails, and when no file is open.
  int ReadToBuffer(char* bytes, int count);

  /// The same for 16-bit units in the machine's byte order; `count` and the result are in units. An
  /// odd byte at the end is dropped.
  int ReadToBuffer(WChar* units, int count);

  /// Reads up to as many bytes as the file's size is at the time of the call, into a new block that
  /// the caller frees with Delete. The block is not null-terminated. Returns false, with a count of
  /// 0, when no file is open, nothing can be read, memory runs out, or the size is 0 or does not
  /// fit into an int. The size is 0 also for devices and for files that the system generates, such
  /// as those in /proc.
  bool ReadToBuffer(char** bytes, int* count);

  /// Reads up to the end of the file and converts from UTF-8. Each ill-formed part becomes U+FFFD;
  /// a byte-order mark is kept as U+FEFF. The caller frees the new string with SysFreeString.
  /// Returns the number of bytes read. Returns 0, with `*text` unchanged, when nothing is left to
  /// read, no file is open, 100 MiB or more are left, or memory runs out.
  ///
  /// After a read error the text ends there, as at the end of the file; ReadFailed() tells the two
  /// apart.
  /// Intended: the length of the string includes the terminating null, so SysStringLen returns one
  /// more than the number of code units of the text. Callers rely on it.
  int ReadAllToBuffer(BSTR* text);

  /// Whether the last read of any kind returned less than it should have: no file was open, the
  /// system reported an error, the file was too large, or memory ran out. False when it read up to
  /// the end of the file or up to the given count.
  bool ReadFailed() const { return readFailed_; }

  /// Frees a block from ReadToBuffer. Null is ignored.
  static void Delete(char* bytes);

 private:
  std::size_t Read(void* bytes, std::size_t size);

  OwnedPointer<File> file_;  // null when no file is open
  bool readFailed_ = false;
  SystemText fileName_;
};

}  // namespace vosmere
