// The store as its callers see it; store_core.h does the work.
#include "vosmere/storage/tree_store.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "vosmere/storage/internal/failure.h"
#include "vosmere/storage/internal/store_core.h"

namespace vosmere {

struct TreeStore::Parts : StoreCore {
  using StoreCore::StoreCore;
};

TreeStore::~TreeStore() {
  delete parts_;
}

TreeStore* TreeStore::Open(const WChar* folder, const StoreOptions& options, Note note, void* to,
                           DocumentError* error) {
  if (!folder || !*folder) {
    FailWith(error, DocumentFault::kCannotOpen, "no folder was named");
    return nullptr;
  }
  auto parts = std::make_unique<Parts>(folder, options);
  if (parts->Open(note, to)) return new TreeStore(parts.release());
  if (error) *error = parts->error;
  return nullptr;
}

void TreeStore::Delete(TreeStore* store) {
  delete store;
}

RNode* TreeStore::root() {
  return parts_->tree().root();
}

bool TreeStore::SetTree(RNode* tree) {
  return parts_->SetTree(tree);
}

std::uint64_t TreeStore::NumberOf(const RNode* link) {
  return parts_->tree().NumberOf(link);
}

RNode* TreeStore::LinkOf(std::uint64_t number) {
  return number ? parts_->tree().LinkOf(number) : nullptr;
}

bool TreeStore::Undo() {
  return parts_->Undo(Direction::kUndone);
}

bool TreeStore::Redo() {
  return parts_->Undo(Direction::kRedone);
}

bool TreeStore::Flush() {
  return parts_->Flush();
}

bool TreeStore::Checkpoint() {
  return parts_->Checkpoint();
}

std::uint64_t TreeStore::sequence() const {
  return parts_->sequence();
}

bool TreeStore::Changes(std::uint64_t after, ChangeReport report, void* to) {
  return parts_->Changes(after, report, to);
}

void TreeStore::Listen(ChangeReport report, void* to) {
  parts_->Listen(report, to);
}

const DocumentError& TreeStore::LastError() const {
  return parts_->error;
}

bool TreeStore::Checkpoints(const WChar* folder, void (*report)(void* to, const StoredCheckpoint&),
                            void* to, DocumentError* error) {
  if (!folder || !*folder)
    return FailWith(error, DocumentFault::kCannotOpen, "no folder was named");
  StoreFiles files(folder);
  ULONG failure = 0;
  if (!files.List(&failure))
    return FailWith(error, DocumentFault::kCannotOpen, "the folder cannot be read", failure);
  for (auto number = files.checkpoints.rbegin(); number != files.checkpoints.rend(); ++number) {
    StoredTree tree;
    const CheckpointState state = ReadCheckpoint(files.Path(FileKind::kCheckpoint, *number), &tree);
    StoredCheckpoint found;
    found.number = *number;
    found.loads = state.problem.empty();
    const std::size_t length = std::min(state.problem.size(), sizeof found.problem - 1);
    std::memcpy(found.problem, state.problem.data(), length);
    found.items = state.header.count;
    found.changes = state.header.sequence;
    found.time = state.header.time;
    std::memcpy(found.digest, state.digest, sizeof found.digest);
    report(to, found);
  }
  return true;
}

}  // namespace vosmere
