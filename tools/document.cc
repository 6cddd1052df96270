// Loads and saves documents of any kind, and turns errors into failures of the tool.
#include "tools/document.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>

#include "tools/colors.h"
#include "tools/excerpt.h"
#include "tools/progress.h"
#include "tools/store.h"
#include "tools/terminal.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

/// Whether the system, and not the content of the file, is the cause. Decides the exit code.
bool IsTrouble(DocumentFault fault) {
  return fault == DocumentFault::kCannotOpen || fault == DocumentFault::kCannotRead ||
         fault == DocumentFault::kCannotWrite || fault == DocumentFault::kNoMemory ||
         fault == DocumentFault::kParserUnavailable;
}

/// Loads from a path, except for standard input, pipes and devices: these can be read only once, so
/// they are read as a stream.
Result<AnyDocument> Load(const std::string& file, Losses* leftOut) {
  if (IsStandard(file)) {
    MakeInputBinary();
    Result<AnyDocument> document = vosmere::Load<AnyDocument>(std::cin, leftOut);
    // A stream that fails to read looks like one that has ended.
    if (!std::ferror(stdin)) return document;
    return detail::FileError(FilePath("-"), "cannot be read", errno);
  }
  std::error_code ignored;
  if (std::filesystem::is_directory(PathOf(file), ignored)) return LoadStore(file);
  if (!std::filesystem::is_other(PathOf(file), ignored))
    return vosmere::Load<AnyDocument>(PathOf(file), leftOut);
  std::ifstream stream(PathOf(file), std::ios::binary);
  return vosmere::Load<AnyDocument>(stream, leftOut);
}

}  // namespace

Failure FailureOf(const std::string& name, const Error& error) {
  const std::string reason = error.reason.empty() ? "cannot be loaded" : Printable(error.reason);
  return FileFailure(IsTrouble(error.fault) ? kTrouble : kBadFile, name, reason, error.line,
                     error.column);
}

void PrintFailure(const Failure& failure) {
  std::cerr << ColoredMessage(failure.message, Stream::kErrors) << '\n' << failure.excerpt;
}

AnyDocument LoadDocument(const std::string& file, Losses* leftOut) {
  Result<AnyDocument> document = [&] {
    const BusyBar bar("reading " + InputName(file));
    return Load(file, leftOut);
  }();
  if (document) return std::move(*document);
  Failure failure = FailureOf(InputName(file), document.error());
  if (!IsStandard(file)) failure.excerpt = Excerpt(PathOf(file), failure.line, failure.column);
  throw failure;
}

SavedBytes SaveDocument(const AnyDocument& document, const std::string& file, std::size_t places,
                        bool pages) {
  const BusyBar bar("writing what was in " + InputName(file));
  SaveOptions options;
  options.pages = pages;
  options.places = places;
  auto saved = std::visit([&](const auto& value) { return SaveToBytes(value, options); }, document);
  if (!saved) throw FailureOf(InputName(file), saved.error());
  return std::move(*saved);
}

Collection CollectionOf(Tree tree) {
  Collection colct = NewCollection(NameOf(tree.get()));
  DeleteTree(colct->GetLocRNodeRoot());  // the empty one that NewCollection has made
  colct->SetLocRNodeRoot(tree.release());
  colct->GetColctNetData()->SetOrdered(true);
  return colct;
}

}  // namespace vosmere::tool
