// The verb "import".
#include "tools/import.h"

#include <iostream>

#include "tools/bookmarks.h"
#include "tools/check.h"
#include "tools/document.h"
#include "tools/document_source.h"
#include "tools/output.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

/// What was imported as the document that the name of the output asks for.
AnyDocument DocumentFor(Imported imported, const std::string& output) {
  if (imported.collection && HasEnding(output, {".opml"})) {
    RNode* const items = imported.collection->GetLocRNodeRoot();
    SetName(*items->item, imported.collection->GetName());
    imported.collection->SetLocRNodeRoot(nullptr);
    return Tree(items);
  }
  if (imported.collection) return std::move(imported.collection);
  if (HasEnding(output, {".rss", ".xml"})) return CollectionOf(std::move(imported.tree));
  return std::move(imported.tree);
}

SavedBytes Saved(const AnyDocument& document, const ImportOptions& options) {
  if (IsBookmarkName(options.output)) return BookmarksOf(document, options.file);
  return SaveDocument(document, options.file, kPlacesShown, true);
}

}  // namespace

int ImportFile(const ImportOptions& options) {
  const InputFile file(options.file);
  const std::string name = InputName(options.file);
  Result<Imported> imported = Import(PathOf(file.name()));
  if (!imported) throw FailureOf(name, imported.error());
  for (const Repair& repair : imported->repairs)
    std::cerr << name << ':' << Printable(ToString(repair)) << '\n';
  if (imported->moreRepairs > 0)
    std::cerr << name << ": further repairs: " << imported->moreRepairs << '\n';
  const SavedBytes saved = Saved(DocumentFor(std::move(*imported), options.output), options);
  WriteOutput(options.output, [&](const FilePath& path) { return WriteFile(path, saved.bytes); });
  PrintWarnings(std::cerr, name, saved.losses);
  return kFine;
}

}  // namespace vosmere::tool
