#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// Why a load or save failed.
enum class DocumentFault : LONG {
  kNone,            ///< it did not fail
  kCannotOpen,      ///< the file is missing, unreadable, a directory, or cannot be created
  kCannotRead,      ///< reading stopped half-way
  kMalformed,       ///< not well-formed XML, or in an encoding that is not known
  kTooDeep,         ///< elements nested deeper than the platform loads
  kExpandsTooMuch,  ///< its entities, defaults or nested texts would expand out of proportion
  kRefersOutside,   ///< its text needs an entity that is not in the document
  kNoMemory,
  kParserUnavailable,  ///< the platform has no XML parser to offer
  kHandlerFailed,      ///< the document's reader gave up
  kCannotWrite,        ///< writing stopped half-way
  kNothingToWrite,     ///< the document came out empty
  kTooLarge,           ///< a document of 100 MiB or more is not written
  kChanged,            ///< the file is not what it was when it was loaded
  kInUse,              ///< another program holds it
};

/// Levels of nested elements that load on a stack of 512 KiB, where the parser is ours to set; on
/// Windows the system's DOM sets its own.
inline constexpr int kMaxXmlDepth = 1024;

/// The record of the last load or save. A plain value.
struct DocumentError {
  DocumentFault fault = DocumentFault::kNone;
  LONG line = 0;          ///< from 1; 0 when there is no place to name
  LONG column = 0;        ///< in characters, from 1; 0 when unknown
  ULONG systemError = 0;  ///< errno on Linux, GetLastError or HRESULT on Windows; 0 for none
  char reason[192] = {};  ///< for people: UTF-8, one line, no full stop
};

/// What a reader or parser throws to make the load that runs it fail with this record; the loader
/// catches it.
struct DocumentFailure {
  DocumentError error;
};

}  // namespace vosmere
