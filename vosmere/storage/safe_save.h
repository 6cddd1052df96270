// Saving a file so that a crash, a full disk or a loss of power leaves the old one or the new one,
// whole.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/document_error.h"
#include "vosmere/base/export.h"
#include "vosmere/base/file_piece.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// What a file holds, for telling later whether it still does. A plain value.
struct FileMark {
  bool isThere = false;
  std::uint64_t size = 0;
  unsigned char digest[16] = {};  ///< MD5, against accidents and not against attackers

  friend bool operator==(const FileMark&, const FileMark&) = default;
};

/// Marks what a file holds now; one that is not there has a mark, too. False when it cannot be
/// read; `error` may be null.
VOSMERE_API bool ReadFileMark(const WChar* path, FileMark* mark, DocumentError* error);

/// Puts these bytes in the place of a file, or makes it: all of them or, when that fails, nothing.
///
/// They go into a new file in the same folder, with a name that nobody can guess and with the old
/// file's rights. Only when the disk has them, and they read back as they are, does the new file
/// take the place of the old one. Links are followed. A new file that a killed save has left behind
/// goes away with the next save. Saves of one file wait for each other, at most ten seconds. Where
/// the file system has no locks they do not wait, and a file that was left behind stays.
///
/// `expected`, where it is not null, is the mark of what was loaded: a file that holds something
/// else is not replaced (DocumentFault::kChanged). `saved` and `error` may be null; `saved` takes
/// the new mark, which takes as long as reading a file of that size.
VOSMERE_API bool SafeSave(const WChar* path, const FilePiece* pieces, std::size_t count,
                          const FileMark* expected, FileMark* saved, DocumentError* error);

/// Whether such a save would find its place: for who makes the bytes only then. It may fail all the
/// same.
VOSMERE_API bool CanSaveTo(const WChar* path, DocumentError* error);

/// SafeSave with the bytes of another file, which stays.
VOSMERE_API bool SafeCopy(const WChar* from, const WChar* path, const FileMark* expected,
                          FileMark* saved, DocumentError* error);

}  // namespace vosmere
