// The steps of a safe save, for who writes piece by piece.
#pragma once

#include "vosmere/base/document_error.h"
#include "vosmere/platform/internal/disk.h"
#include "vosmere/storage/safe_save.h"

namespace vosmere {

/// A new file on its way to the place of an old one. Begin, Write as often as needed, Stored, then
/// look at what `file()` reads, and Replace. Each is false with the reason in `error()`; then, and
/// when the object ends before Replace, the new file goes away and the old one is what it was.
class SafeFile {
 public:
  SafeFile() = default;
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;
  ~SafeFile();

  /// Where the file is, and whether there can be one.
  bool Find(const WChar* path);
  /// Finds it, too.
  bool Begin(const WChar* path);
  bool Write(const void* bytes, std::size_t size);
  /// Until the disk has all of it.
  bool Stored();
  /// What was written.
  DiskFile& file() { return holder_; }
  bool Replace(const FileMark* expected);

  const DocumentError& error() const { return error_; }
  bool Fail(DocumentFault fault, const char* reason, ULONG systemError = 0);

 private:
  bool HoldOld();
  bool MakeNew();
  void RemoveLeftOvers() const;
  bool IsExpected(const FileMark& expected);

  PathText target_, folder_, name_, temporary_;
  bool isThere_ = false;
  DiskFile old_;     // locked; not open where there is none
  DiskFile holder_;  // keeps the new one locked until it is in its place
  DiskFile writer_;
  DocumentError error_;
};

/// The bytes of an open file.
bool MarkOf(DiskFile& file, FileMark* mark);

}  // namespace vosmere
