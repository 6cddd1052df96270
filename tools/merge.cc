#include "tools/merge.h"

#include <iostream>

#include "tools/check.h"
#include "tools/diff.h"
#include "tools/document.h"
#include "tools/output.h"
#include "tools/report.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

struct MergedDocument {
  AnyDocument document;
  std::vector<Conflict> conflicts;
};

AnyDocument LoadLike(const AnyDocument& first, const std::string& file) {
  AnyDocument document = LoadDocument(file);
  if (document.index() != first.index())
    throw FileFailure(kBadFile, InputName(file), "it is of another kind than the first file");
  return document;
}

/// One base is used as it is, for the user knows; of several, the one that fits.
template <class Kind>
const Kind* BaseOf(const std::vector<Kind>& bases, const Kind& ours, const Kind& theirs) {
  if (bases.size() == 1) return &bases[0];
  const Kind* const base = FindBase(bases, ours, theirs);
  if (!base && !bases.empty()) std::cerr << "no base fits both sides; merged without\n";
  return base;
}

template <class Kind>
MergedDocument MergeAs(const AnyDocument& ours, const MergeOptions& options) {
  const AnyDocument theirs = LoadLike(ours, options.theirs);
  std::vector<Kind> bases;
  for (const std::string& file : options.bases)
    bases.push_back(std::get<Kind>(LoadLike(ours, file)));
  const Kind &left = std::get<Kind>(ours), &right = std::get<Kind>(theirs);
  const Kind* const base = BaseOf(bases, left, right);
  auto merged = base ? vosmere::Merge(*base, left, right) : vosmere::Merge(left, right);
  if constexpr (std::is_same_v<Kind, Tree>)
    return {std::move(merged.tree), std::move(merged.conflicts)};
  else
    return {std::move(merged.collection), std::move(merged.conflicts)};
}

MergedDocument MergeFiles(const AnyDocument& ours, const MergeOptions& options) {
  if (std::holds_alternative<Tree>(ours)) return MergeAs<Tree>(ours, options);
  if (std::holds_alternative<Collection>(ours)) return MergeAs<Collection>(ours, options);
  throw FileFailure(kBadFile, InputName(options.ours), "only trees and collections can be merged");
}

}  // namespace

void PrintConflicts(const std::vector<Conflict>& conflicts) {
  for (const Conflict& conflict : conflicts)
    std::cerr << "conflict: " << Printable(ToString(conflict)) << '\n';
}

int Merge(const MergeOptions& options) {
  KeepReportApart(options.out, options.json);
  const AnyDocument ours = LoadDocument(options.ours);
  const MergedDocument merged = MergeFiles(ours, options);
  if (options.dryRun && options.json)
    std::cout << "{\"conflicts\":" << JsonText(JsonOf(merged.conflicts)) << ",\"changes\":";
  else if (!options.json)
    PrintConflicts(merged.conflicts);
  if (options.dryRun) {
    PrintDifferences(ours, merged.document, options.json);
    if (options.json) std::cout << "}\n";
    return kFine;
  }
  const SavedBytes saved = SaveDocument(merged.document, options.out, kPlacesShown);
  WriteOutput(options.out, [&](const FilePath& path) { return WriteFile(path, saved.bytes); });
  if (options.json)
    PrintReport({{"conflicts", JsonOf(merged.conflicts)}, {"warnings", JsonOf(saved.losses)}});
  else
    PrintWarnings(std::cerr, OutputName(options.out), saved.losses);
  return kFine;
}

}  // namespace vosmere::tool
