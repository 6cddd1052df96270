#include "tools/merge.h"

#include <iostream>

#include "tools/check.h"
#include "tools/diff.h"
#include "tools/document.h"
#include "tools/output.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

struct MergedDocument {
  AnyDocument document;
  std::vector<Conflict> conflicts;
};

template <class Kind>
MergedDocument MergeAs(const AnyDocument* base, const AnyDocument& ours,
                       const AnyDocument& theirs) {
  static const Kind none;
  const Kind& start = base ? std::get<Kind>(*base) : none;
  auto merged = vosmere::Merge(start, std::get<Kind>(ours), std::get<Kind>(theirs));
  if constexpr (std::is_same_v<Kind, Tree>)
    return {std::move(merged.tree), std::move(merged.conflicts)};
  else
    return {std::move(merged.collection), std::move(merged.conflicts)};
}

AnyDocument LoadLike(const AnyDocument& first, const std::string& file) {
  AnyDocument document = LoadDocument(file);
  if (document.index() != first.index())
    throw FileFailure(kBadFile, InputName(file), "it is of another kind than the first file");
  return document;
}

MergedDocument MergeFiles(const AnyDocument& ours, const MergeOptions& options) {
  const AnyDocument theirs = LoadLike(ours, options.theirs);
  std::optional<AnyDocument> base;
  if (!options.base.empty()) base = LoadLike(ours, options.base);
  const AnyDocument* const start = base ? &*base : nullptr;
  if (std::holds_alternative<Tree>(ours)) return MergeAs<Tree>(start, ours, theirs);
  if (std::holds_alternative<Collection>(ours)) return MergeAs<Collection>(start, ours, theirs);
  throw FileFailure(kBadFile, InputName(options.ours), "only trees and collections can be merged");
}

}  // namespace

int Merge(const MergeOptions& options) {
  const AnyDocument ours = LoadDocument(options.ours);
  const MergedDocument merged = MergeFiles(ours, options);
  for (const Conflict& conflict : merged.conflicts)
    std::cerr << "conflict: " << Printable(ToString(conflict)) << '\n';
  if (options.dryRun) {
    PrintDifferences(ours, merged.document, false);
    return kFine;
  }
  const SavedBytes saved = SaveDocument(merged.document, options.out, kPlacesShown);
  WriteOutput(options.out, [&](const FilePath& path) { return WriteFile(path, saved.bytes); });
  PrintWarnings(std::cerr, OutputName(options.out), saved.losses);
  return kFine;
}

}  // namespace vosmere::tool
