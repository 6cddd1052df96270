#include "tools/store.h"

#include <chrono>
#include <iostream>
#include <limits>

#include "tools/document.h"
#include "tools/document_content.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

Result<Store> Open(const std::string& folder, const StoreOptions& options) {
  const FilePath path(PathOf(folder));
  Result<Store> store = Store::Open(path.get(), options);
  if (store)
    for (const auto& [kind, text] : store->notes())
      if (kind == StoreNoteKind::kProblem)
        std::cerr << Printable(folder) << ": " << Printable(text) << '\n';
  return store;
}

StoreOptions ToRead() {
  StoreOptions options;
  options.readOnly = true;
  return options;
}

Store OpenOrThrow(const std::string& folder, const StoreOptions& options) {
  Result<Store> store = Open(folder, options);
  if (!store) throw FailureOf(Printable(folder), store.error());
  return std::move(*store);
}

const char* What(LONG type) {
  constexpr const char* kEvents[] = {"is added", "is changed", "is removed", "is moved"};
  return type >= 0 && type % 1000 < 4 ? kEvents[type % 1000] : "is changed";
}

std::string DateOf(std::uint64_t time) {
  const std::chrono::seconds seconds(static_cast<std::int64_t>(time));
  return ToIsoDate(sys_seconds(seconds)).value_or("unknown time");
}

void Print(const StoredCheckpoint& checkpoint, std::ostream& out) {
  out << "checkpoint " << checkpoint.number << ": ";
  if (checkpoint.items)
    out << "items: " << checkpoint.items << ", changes: " << checkpoint.changes << ", "
        << DateOf(checkpoint.time);
  if (!checkpoint.loads)
    out << (checkpoint.items ? "; " : "") << "does not load: " << checkpoint.problem;
  out << '\n';
}

void PrintJson(const StoredCheckpoint& checkpoint, std::ostream& out) {
  const bool isKnown = checkpoint.items != 0;
  out << JsonText({{"number", checkpoint.number},
                   {"items", isKnown ? Json(checkpoint.items) : Json()},
                   {"changes", isKnown ? Json(checkpoint.changes) : Json()},
                   {"time", isKnown ? Json(checkpoint.time) : Json()},
                   {"problem", checkpoint.loads ? Json() : Json(checkpoint.problem)}})
      << '\n';
}

}  // namespace

Result<AnyDocument> LoadStore(const std::string& folder) {
  const Result<Store> store = Open(folder, ToRead());
  if (!store) return store.error();
  return AnyDocument(Copy(store->tree()));
}

int ShowLog(const std::string& folder, bool asJson, std::ostream& out) {
  const Store store = OpenOrThrow(folder, ToRead());
  const auto print = [&](std::uint64_t sequence, CVSMNotifyMsg& message) {
    if (asJson) {
      out << JsonText({{"sequence", sequence},
                       {"name", ToUtf8(message.GetName())},
                       {"what", What(message.GetNotifyType())},
                       {"oldFolder", ToUtf8(message.GetOldParent())},
                       {"folder", ToUtf8(message.GetParent())}})
          << '\n';
      return;
    }
    out << sequence << ' ' << Printable(message.GetName()) << ' ' << What(message.GetNotifyType());
    if (!TextView(message.GetOldParent()).empty())
      out << " from " << Printable(message.GetOldParent());
    if (!TextView(message.GetParent()).empty()) out << " in " << Printable(message.GetParent());
    out << '\n';
  };
  if (const std::optional<Error> error = store.Changes(0, print))
    throw FailureOf(Printable(folder), *error);
  return kFine;
}

int Recover(const std::string& folder, std::uint64_t restored, bool asJson, std::ostream& out) {
  const FilePath path(PathOf(folder));
  const auto checkpoints = Store::Checkpoints(path.get());
  if (!checkpoints) throw FailureOf(Printable(folder), checkpoints.error());
  int exitCode = checkpoints->empty() ? kBadFile : kFine;
  for (const StoredCheckpoint& checkpoint : *checkpoints) {
    asJson ? PrintJson(checkpoint, out) : Print(checkpoint, out);
    if (!checkpoint.loads) exitCode = kBadFile;
  }
  if (restored == 0) return exitCode;
  StoreOptions options;
  options.create = false;
  options.keep = std::numeric_limits<int>::max();
  {  // so that the current state can be restored as well
    Result<Store> now = Open(folder, options);
    if (now)
      if (const std::optional<Error> error = now->Checkpoint())
        throw FailureOf(Printable(folder), *error);
  }
  options.checkpoint = restored;
  const Store store = OpenOrThrow(folder, options);
  if (asJson)
    out << JsonText({{"restored", restored}}) << '\n';
  else
    out << "checkpoint " << restored << " is now the newest\n";
  return kFine;
}

}  // namespace vosmere::tool
