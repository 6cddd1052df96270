// Saving a file so that a crash, a full disk or a power failure leaves either the old file or the
// new one, always whole.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/document_error.h"
#include "vosmere/base/export.h"
#include "vosmere/base/file_piece.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Identifies the contents of a file, to find out later whether they have changed. A plain value.
struct FileMark {
  bool isThere = false;
  std::uint64_t size = 0;
  unsigned char digest[16] = {};  ///< MD5: detects accidents, not attackers

  friend bool operator==(const FileMark&, const FileMark&) = default;
};

/// Reads the mark of a file. A missing file has a mark too. False if the file cannot be read;
/// `error` may be null.
VOSMERE_API bool ReadFileMark(const WChar* path, FileMark* mark, DocumentError* error);

/// Replaces the contents of a file with these bytes, or creates the file. True once all of them are
/// on disk under this name. False, with the reason in `error`, if the file is unchanged.
///
/// The bytes go to a new file in the same folder, with a random name and the permissions, owner and
/// access list of the old file. It is flushed, closed, read back and compared. Then one rename puts
/// it in the place of the old file, and the folder is flushed. So at every moment, also after a
/// crash or a power failure, the path leads to the whole old file or to the whole new one:
///
/// - Before the rename the old file is there. The new file may be left behind; the next save of the
///   same file deletes it.
/// - After the rename the new file is there, but until the folder is flushed a power failure may
///   bring the old one back.
/// - If only that last flush fails, the result is false with the reason "is saved, but the disk
/// does
///   not confirm it": the path leads to the new file already.
///
/// Links are followed. A file that may be written but not read is replaced too. Saves of one file,
/// by any programs that use this function, wait for each other, for at most ten seconds. On a file
/// system without locks they do not wait, and files that were left behind stay.
///
/// If `expected` is not null, the file is only replaced if it still has this mark; otherwise the
/// error is DocumentFault::kChanged. `saved` and `error` may be null; `saved` receives the mark of
/// the new file, which takes as long as reading a file of that size.
VOSMERE_API bool SafeSave(const WChar* path, const FilePiece* pieces, std::size_t count,
                          const FileMark* expected, FileMark* saved, DocumentError* error);

/// Whether a file can be saved at this path: the folder exists, and an existing file is a plain
/// file that may be written. Call it before work that cannot be undone; the save itself can still
/// fail.
VOSMERE_API bool CanSaveTo(const WChar* path, DocumentError* error);

/// The same as SafeSave with the contents of the file `from`, which is not changed.
VOSMERE_API bool SafeCopy(const WChar* from, const WChar* path, const FileMark* expected,
                          FileMark* saved, DocumentError* error);

}  // namespace vosmere
