#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

class File;

/// Reads a plain file: its bytes, or its text.
///
/// Nothing here waits: a pipe does not open, and neither does a device on Windows; elsewhere a
/// device gives what it has. The platform's reason for a failure is not kept. One thread at a time.
class VOSMERE_API CReadFile {
 public:
  CReadFile();
  CReadFile(const CReadFile&) = delete;
  CReadFile& operator=(const CReadFile&) = delete;
  virtual ~CReadFile();

  /// Opens an existing file, which others may read at the same time; what was open before is closed
  /// in any case. False for a directory, and for null.
  bool OpenFile(const WChar* path);
  void CloseFile();

  /// The path that OpenFile was given last, whether or not it opened; null at first.
  WChar* GetFileName() const { return fileName_.get(); }

  /// The low 32 bits of the length in bytes; all ones when no file is open or the system does not
  /// tell.
  ULONG GetFileSize() const;

  /// Reads on, up to `count` bytes. Returns how many; 0 at the end, on failure, and when no file is
  /// open.
  int ReadToBuffer(char* bytes, int count);

  /// The same in units of two bytes, as they stand in the file. A single byte at the end is lost.
  int ReadToBuffer(WChar* units, int count);

  /// Reads on, up to as many bytes as the file has when it begins. The caller frees the new block
  /// with Delete; no zero byte follows the bytes. False, with a count of 0, when no file is open,
  /// its size is 0 (as a device or a file made up by the system says of itself) or beyond an int,
  /// it cannot be read, or memory runs out.
  bool ReadToBuffer(char** bytes, int* count);

  /// Reads on to the end and converts from UTF-8; ill-formed parts become U+FFFD, and a byte-order
  /// mark stays, as U+FEFF. The caller frees the new string with SysFreeString. Returns the number
  /// of bytes read; 0, with `*text` untouched, when nothing is left to read, no file is open, the
  /// file turns out to have 100 MiB or more, or memory runs out.
  /// Where the system cannot read on the text ends as it does at the end of the file, and so it may
  /// be a part of it, or none; ReadFailed() tells these apart.
  /// Intended: the string counts the zero unit that ends it, so that SysStringLen gives one more
  /// than the text has. Callers have always allowed for it.
  int ReadAllToBuffer(BSTR* text);

  /// Whether the last reading, of any kind, was to give more than it gave: no file was open, the
  /// system could not read on, there was too much for it, or memory ran out. False when it came to
  /// the end of the file, or to the count.
  bool ReadFailed() const { return readFailed_; }

  /// Frees a block that ReadToBuffer handed out. Null is ignored.
  static void Delete(char* bytes);

 private:
  std::size_t Read(void* bytes, std::size_t size);

  OwnedPointer<File> file_;  // null while none is open
  bool readFailed_ = false;
  SystemText fileName_;
};

}  // namespace vosmere
