// The library for C++ programs: the only header that they need to include.
//
// In addition to the classes of vosmere/vosmere.h it has owning handles, texts in UTF-8 and UTF-16,
// ranges for loops, and one type for results. It adds no second data model: its functions return
// the library's own items and lists, which can also be used with all other operations.
//
//   text.h     converting texts, comparing without a copy
//   own.h      a handle for every result that the caller frees
//   result.h   a value or an error
//   walk.h     items: their texts, loops over them, searches
//   tree.h     build, move, remove, copy, sort
//   lists.h    collections, search engines, tags, FTP sites
//   documents.h  loading and saving, with a report of losses
//   files.h    file paths, replacing files
//   favorites.h  the Favorites folder of a Windows user
//   import.h   lists, feeds and bookmark files of other programs, repaired
//   diff.h     what differs between two trees
//   merge.h    one tree of two that have been changed independently
//   store.h    a tree on disk with a log of changes, with undo
//   dates.h    the dates of feeds and the times of items
//   jobs.h     functions that run at a given time, or periodically
//   upload.h   uploading a file or a text to a web server
//
// UTF-8 arguments can be any kind of string (std::string_view, a literal); results are std::string.
// The only exception thrown is std::bad_alloc.
#pragma once

#include "vosmere/cpp/dates.h"
#include "vosmere/cpp/diff.h"
#include "vosmere/cpp/document_kinds.h"
#include "vosmere/cpp/documents.h"
#include "vosmere/cpp/favorites.h"
#include "vosmere/cpp/files.h"
#include "vosmere/cpp/import.h"
#include "vosmere/cpp/jobs.h"
#include "vosmere/cpp/lists.h"
#include "vosmere/cpp/losses.h"
#include "vosmere/cpp/merge.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/cpp/store.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/tree.h"
#include "vosmere/cpp/upload.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/vosmere.h"
