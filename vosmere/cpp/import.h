// Importing lists, feeds and bookmark files of other programs, and saving bookmark files.
//
//   Result<Imported> in = Import("from-my-phone.opml");
//   if (!in) return Complain(in.error());
//   for (const Repair& repair : in->repairs)
//     std::cout << repair << '\n';          // 4:12: an '&' that begins no reference: '&' became
//     '&amp;'
//   if (in->tree) Show(*in->tree);          // from OPML and bookmark files
//   else Show(*in->collection);             // from RSS
//
// doc/import.md shows what is repaired.
#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/cpp/documents.h"
#include "vosmere/cpp/files.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/import/bookmarks_writer.h"
#include "vosmere/import/import_document.h"

namespace vosmere {

/// What was repaired at one place.
struct Repair {
  RepairKind kind;
  int line;           ///< from 1
  int column;         ///< in characters, from 1
  std::string what;   ///< what was wrong: one line in UTF-8, without a full stop
  std::string found;  ///< the beginning of what was found; empty if something was missing
  /// The beginning of what was made of it: empty if it was left out, the same as `found` if it was
  /// kept.
  std::string made;
};

/// "4:12: what was wrong: 'found' became 'made'"
inline std::string ToString(const Repair& repair) {
  const std::string found = "'" + repair.found + "'", made = "'" + repair.made + "'";
  const std::string deed = repair.found.empty()          ? made + " put in"
                           : repair.made.empty()         ? found + " left out"
                           : repair.found == repair.made ? found + " kept"
                                                         : found + " became " + made;
  return std::to_string(repair.line) + ":" + std::to_string(repair.column) + ": " + repair.what +
         ": " + deed;
}
inline std::ostream& operator<<(std::ostream& out, const Repair& repair) {
  return out << ToString(repair);
}

/// The result of Import: a tree or a collection, the other is empty.
struct Imported {
  Tree tree;
  Collection collection;
  std::vector<Repair> repairs;  ///< in the order of their places, at most 10,000
  std::size_t moreRepairs = 0;  ///< further ones
};

namespace detail {

/// Runs one of the import functions.
template <class Run>
Result<Imported> ImportWith(const std::string& source, Run run) {
  Imported imported;
  ImportedItems items;
  DocumentError error;
  const auto take = [](void* to, const DocumentRepair& repair) {
    static_cast<std::vector<Repair>*>(to)->push_back(
        {repair.kind, repair.line, repair.column, repair.what, repair.found, repair.made});
  };
  if (!run(&items, take, &imported.repairs, &error)) return Error(source, error);
  imported.tree.reset(items.tree);
  imported.collection.reset(items.colct);
  imported.moreRepairs = items.moreRepairs;
  return imported;
}

}  // namespace detail

/// Reads OPML, RSS or a bookmark file as it is in the field; see import/import_document.h.
inline Result<Imported> Import(Bytes document) {
  return detail::ImportWith({}, [&](auto... arguments) {
    return ImportDocument(document.view.data(), document.view.size(), arguments...);
  });
}
inline Result<Imported> Import(const FilePath& path) {
  return detail::ImportWith(
      path.name(), [&](auto... arguments) { return ImportFile(path.get(), arguments...); });
}

/// Saves a tree as a bookmark file that browsers import: import/bookmarks_writer.h. The file is
/// replaced completely or not at all. Import reads it back.
inline Result<Saved> SaveBookmarks(const FilePath& path, const Tree& tree) {
  if (!tree) return Error(path.name(), "there is nothing to save");
  Saved saved;
  CWriteBookmarks writer(tree.get());
  writer.SetLossReport(Losses::Report, &saved.losses);
  if (std::optional<Error> error = detail::SaveWritten(path, writer)) return *std::move(error);
  return saved;
}
/// The same to memory.
inline Result<SavedBytes> BookmarksToBytes(const Tree& tree) {
  if (!tree) return Error({}, "there is nothing to save");
  SavedBytes saved;
  CWriteBookmarks writer(tree.get());
  writer.SetLossReport(Losses::Report, &saved.losses);
  if (std::optional<Error> error = detail::AppendWritten(writer, saved.bytes))
    return *std::move(error);
  return saved;
}

}  // namespace vosmere
