// The library for C++ programs: the one header to include.
//
// On top of the classes that vosmere/vosmere.h brings, it has owning handles, texts in UTF-8 and
// UTF-16, ranges that a break ends, and one type for results. It adds no second model: what it
// hands out are the library's own items and lists, and every plain operation goes with it.
//
//   text.h     texts in and out, comparing without a copy
//   own.h      a handle for every result that the caller frees
//   result.h   a value, or the reason why there is none
//   walk.h     items: their texts, loops over them, searches
//   tree.h     build, move, remove, copy, sort
//   lists.h    collections, search engines, tags, FTP sites
//   documents.h  loading and saving, and what is lost on the way
//   store.h    a tree that is kept for years, with undo
//   dates.h    instants of feeds and items
//   jobs.h     functions run at a time, or every so often
//   upload.h   a file or a document to a web server
//
// UTF-8 goes in as whatever is a string (std::string_view, a literal) and comes out as std::string.
// Nothing is thrown but std::bad_alloc.
#pragma once

#include "vosmere/cpp/dates.h"
#include "vosmere/cpp/document_kinds.h"
#include "vosmere/cpp/documents.h"
#include "vosmere/cpp/favorites.h"
#include "vosmere/cpp/files.h"
#include "vosmere/cpp/jobs.h"
#include "vosmere/cpp/lists.h"
#include "vosmere/cpp/losses.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/cpp/store.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/tree.h"
#include "vosmere/cpp/upload.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/vosmere.h"
