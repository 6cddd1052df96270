// Importing lists, feeds and bookmark files of other programs, as they are in the field.
#pragma once

#include <cstddef>

#include "vosmere/base/document_error.h"
#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/import/repair.h"

namespace vosmere {

/// What an import made: a tree or a collection, the other is null.
struct ImportedItems {
  RNode* tree = nullptr;        ///< the caller frees it with DeleteTree
  CColctNode* colct = nullptr;  ///< the caller frees it with DeleteWithLocalTree
  std::size_t moreRepairs = 0;  ///< repairs beyond the 10,000 that are reported
};

/// Reads OPML and bookmark files as a tree of folders, pages and collections, and RSS 0.91 to 2.0
/// as a collection. doc/import.md shows what is repaired.
///
/// A document in which the exact readers find nothing unusual is read by them alone. Any other is
/// converted to UTF-8 and made well-formed, and then read by them. Nothing is executed or fetched;
/// addresses that run something when they are opened are kept and reported.
///
/// Returns false, with `*error` set and `*items` empty, for a document of another kind, for one
/// without a root element, for one that is too deep or too large even when repaired (256 MiB), and
/// when memory runs out. The repairs are reported in the order of their places, after everything
/// has been read; none is reported for a failure.
VOSMERE_API bool ImportDocument(const char* bytes, std::size_t length, ImportedItems* items,
                                RepairReport report, void* to, DocumentError* error);

/// The same for a file. Null for the path fails.
VOSMERE_API bool ImportFile(const WChar* path, ImportedItems* items, RepairReport report, void* to,
                            DocumentError* error);

}  // namespace vosmere
