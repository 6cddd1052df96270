// Why the last load or save of a document failed: the kind of error, its place and a reason.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// The kind of error that made a load or save fail.
enum class DocumentFault : LONG {
  kNone,               ///< no error
  kCannotOpen,         ///< the file is missing, unreadable or a directory, or cannot be created
  kCannotRead,         ///< a read error before the end of the file
  kMalformed,          ///< not well-formed XML, or in an unknown encoding
  kTooDeep,            ///< elements nested more deeply than the platform loads, see kMaxXmlDepth
  kExpandsTooMuch,     ///< its entities, defaults or nested texts would expand out of proportion
  kRefersOutside,      ///< its text needs an entity that is not defined in the document
  kNoMemory,           ///< memory ran out
  kParserUnavailable,  ///< the system's XML parser is not available
  kHandlerFailed,      ///< the document's reader failed
  kCannotWrite,        ///< a write error, for example a full disk
  kNothingToWrite,     ///< the document is empty, for example because there is nothing to write
  kTooLarge,           ///< the document would have 100 MiB or more
  kChanged,            ///< the file is no longer what it was when it was loaded
  kInUse,              ///< another program is saving the file, or has the store open
};

/// How many levels deep elements may nest. A document of this depth loads on a thread with a stack
/// of 512 KiB. On Windows the system's DOM is asked to keep the same limit; a version that does not
/// know the property has a limit of its own.
inline constexpr int kMaxXmlDepth = 1024;

/// What is known about the last load or save. A plain value without ownership; it may be copied.
struct DocumentError {
  DocumentFault fault = DocumentFault::kNone;
  LONG line = 0;          ///< from 1; 0 when the error has no place in the document
  LONG column = 0;        ///< in characters, from 1; 0 when unknown
  ULONG systemError = 0;  ///< errno on Linux, GetLastError or an HRESULT on Windows; 0 for none
  char reason[192] = {};  ///< for the user: UTF-8, null-terminated, one line, without a full stop
  /// The path of the innermost element that was open at this place, "/rss/channel/item[2]": UTF-8,
  /// null-terminated; begins with "..." if it is longer; empty when unknown.
  char element[192] = {};
};

/// The exception that a parser or a document's reader throws to make the current load fail with
/// this record. The loader catches it; it never leaves a public operation.
struct DocumentFailure {
  DocumentError error;
};

}  // namespace vosmere
