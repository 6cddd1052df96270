// SafeFile, a safe save in single steps, for callers that write piece by piece.
#pragma once

#include "vosmere/base/document_error.h"
#include "vosmere/platform/internal/disk.h"
#include "vosmere/storage/safe_save.h"

namespace vosmere {

/// A new file that will replace an old one. Call Begin, Write as often as needed, Stored, compare
/// what can be read from `file()`, then Replace. Each returns false on failure, with the reason in
/// `error()`. If one fails, or the object is destroyed before Replace, the new file is deleted and
/// the old one is unchanged.
class SafeFile {
 public:
  SafeFile() = default;
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;
  ~SafeFile();

  /// Resolves the path and checks that a file can be saved there.
  bool Find(const WChar* path);
  /// Calls Find, locks the old file and creates the new one.
  bool Begin(const WChar* path);
  bool Write(const void* bytes, std::size_t size);
  /// Flushes and closes the new file.
  bool Stored();
  /// The new file, to read back what was written.
  DiskFile& file() { return holder_; }
  /// Renames the new file to the path and flushes the folder.
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
  DiskFile old_;     // locked; not open if there is none
  DiskFile holder_;  // keeps the new file locked until it replaces the old one
  DiskFile writer_;
  DocumentError error_;
};

/// The mark of an open file.
bool MarkOf(DiskFile& file, FileMark* mark);

}  // namespace vosmere
