// The verb "import".
#include "tools/import.h"

#include <iostream>
#include <set>
#include <string>

#include "tools/bookmarks.h"
#include "tools/check.h"
#include "tools/document.h"
#include "tools/document_source.h"
#include "tools/excerpt.h"
#include "tools/merge.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/report.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

/// Imports a file. The repairs are printed unless `asJson`.
Imported ImportOf(const std::string& name, bool asJson) {
  const InputFile file(name);
  Result<Imported> imported = [&] {
    const BusyBar bar("importing " + InputName(name));
    return Import(PathOf(file.name()));
  }();
  if (!imported) {
    Failure failure = FailureOf(InputName(name), imported.error());
    failure.excerpt = Excerpt(PathOf(file.name()), failure.line, failure.column);
    throw failure;
  }
  if (asJson) return *std::move(imported);
  for (const Repair& repair : imported->repairs)
    std::cerr << InputName(name) << ':' << Printable(ToString(repair)) << '\n';
  if (imported->moreRepairs > 0)
    std::cerr << InputName(name) << ": further repairs: " << imported->moreRepairs << '\n';
  return *std::move(imported);
}

Tree AsTree(Imported imported) {
  if (imported.tree) return std::move(imported.tree);
  RNode* const items = imported.collection->GetLocRNodeRoot();
  SetName(*items->item, imported.collection->GetName());
  imported.collection->SetLocRNodeRoot(nullptr);
  return Tree(items);
}

Collection AsCollection(Imported imported) {
  if (imported.collection) return std::move(imported.collection);
  return CollectionOf(std::move(imported.tree));
}

/// What was imported as the document that the name of the output asks for.
AnyDocument DocumentFor(Imported imported, const std::string& output) {
  if (HasEnding(output, {".opml"})) return AsTree(std::move(imported));
  if (HasEnding(output, {".rss", ".xml"})) return AsCollection(std::move(imported));
  if (imported.tree) return std::move(imported.tree);
  return std::move(imported.collection);
}

/// Removes what the list has already, in whichever folder.
void RemoveKnown(RNode* added, RNode* list) {
  std::set<std::string> known;
  for (const CUrlNode& page : Pages(list)) known.insert(AddressOf(page));
  for (const CColctNode& feed : Collections(list)) known.insert(AddressOf(feed));
  known.erase("");
  const auto isKnown = [&](const CUrlNode& item) { return known.contains(AddressOf(item)); };
  RemoveIf<CUrlNode>(added, isKnown);
  RemoveIf<CColctNode>(added, isKnown);
}

/// The list with the items that were imported. It keeps its own name.
AnyDocument MergedInto(Imported list, Imported added, std::vector<Conflict>& conflicts) {
  if (list.tree) {
    const Tree theirs = AsTree(std::move(added));
    SetName(*theirs->item, NameOf(list.tree.get()));
    RemoveKnown(theirs.get(), list.tree.get());
    Merged merged = vosmere::Merge(list.tree, theirs);
    conflicts = std::move(merged.conflicts);
    return std::move(merged.tree);
  }
  const Collection theirs = AsCollection(std::move(added));
  SetName(*theirs, list.collection->GetName());
  RemoveKnown(theirs->GetLocRNodeRoot(), list.collection->GetLocRNodeRoot());
  MergedCollection merged = vosmere::Merge(list.collection, theirs);
  conflicts = std::move(merged.conflicts);
  return std::move(merged.collection);
}

}  // namespace

int ImportFile(const ImportOptions& options) {
  const bool merges = !options.into.empty();
  const std::string& output = merges ? options.into : options.output;
  KeepReportApart(output, options.json);
  Imported imported = ImportOf(options.file, options.json);
  Json report = {{"repairs", JsonOf(imported.repairs)}, {"moreRepairs", imported.moreRepairs}};
  std::vector<Conflict> conflicts;
  const AnyDocument document =
      merges ? MergedInto(ImportOf(options.into, options.json), std::move(imported), conflicts)
             : DocumentFor(std::move(imported), output);
  if (!options.json) PrintConflicts(conflicts);
  const SavedBytes saved = IsBookmarkName(output)
                               ? BookmarksOf(document, options.file)
                               : SaveDocument(document, options.file, kPlacesShown, true);
  WriteOutput(output, [&](const FilePath& path) { return WriteFile(path, saved.bytes); });
  report["conflicts"] = JsonOf(conflicts);
  report["warnings"] = JsonOf(saved.losses);
  if (options.json)
    PrintReport(report);
  else
    PrintWarnings(std::cerr, InputName(options.file), saved.losses);
  return kFine;
}

}  // namespace vosmere::tool
