// A tree that is stored permanently: every change is soon written to disk and can be undone.
//
//   Result<Store> store = Store::Open("library");
//   if (!store) return Complain(store.error());      // library: another program has the store open
//   for (const StoreNote& note : store->notes()) std::cout << note << '\n';
//   Add<CFolderNode>(store->tree(), "Trips");        // written to the log by the next flush
//   store->Undo();
//   if (std::optional<Error> error = store->Flush()) Complain(*error);
//
// Change the tree with the functions of tree.h and walk.h, and other fields inside Update.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/storage/tree_store.h"

namespace vosmere {

/// A message from opening a store: one line of UTF-8 without a full stop.
struct StoreNote {
  StoreNoteKind kind;
  std::string text;

  friend std::ostream& operator<<(std::ostream& out, const StoreNote& note) {
    return out << note.text;
  }
};

/// An open store; storage/tree_store.h says what it guarantees. The destructor flushes it, but
/// cannot report an error; call Flush before to get it. A moved-from store can only be destroyed or
/// assigned to. The only exception thrown is std::bad_alloc.
class Store {
 public:
  /// Opens the store in a folder. The error says why it cannot be opened.
  static Result<Store> Open(const Wide& folder, const StoreOptions& options = {}) {
    Store store(ToUtf8(folder.get()));
    DocumentError error;
    store.core_.reset(TreeStore::Open(folder, options, AddNote, &store.notes_, &error));
    if (!store.core_) return Error(store.name_, error);
    return store;
  }

  /// Messages from opening the store: which checkpoint was loaded, and what could not be used.
  const std::vector<StoreNote>& notes() const { return notes_; }

  /// The root of the tree, which the store owns. Never null.
  RNode* tree() const { return core_->root(); }
  /// Replaces the tree. The store then owns `tree` and the local trees of its collections, also on
  /// failure.
  std::optional<Error> SetTree(Tree tree) { return ErrorUnless(core_->SetTree(tree.release())); }

  /// The number that identifies an item for the lifetime of the store; 0 if it is not in the store.
  std::uint64_t NumberOf(Link link) const { return core_->NumberOf(link); }
  /// The link with this number; null if it is not in the store.
  RNode* LinkOf(std::uint64_t number) const { return core_->LinkOf(number); }

  /// Undo or redo one change. False if there was none.
  Result<bool> Undo() { return Done(core_->Undo()); }
  Result<bool> Redo() { return Done(core_->Redo()); }

  /// Waits until every change is on disk.
  std::optional<Error> Flush() { return ErrorUnless(core_->Flush()); }
  /// Writes the whole tree and begins a new log.
  std::optional<Error> Checkpoint() { return ErrorUnless(core_->Checkpoint()); }

  /// The number of changes so far.
  std::uint64_t sequence() const { return core_->sequence(); }
  /// Calls `use(sequence, message)` for every later change than number `after` that is still in the
  /// logs.
  template <class Use>
  std::optional<Error> Changes(std::uint64_t after, Use use) const {
    return ErrorUnless(core_->Changes(
        after,
        [](void* to, std::uint64_t sequence, CVSMNotifyMsg* message) {
          (*static_cast<Use*>(to))(sequence, *message);
        },
        &use));
  }
  /// Sets a function that is called for every change when it is made, also by Undo and Redo. An
  /// empty function turns this off.
  void Listen(std::function<void(std::uint64_t sequence, CVSMNotifyMsg& message)> listener) {
    using Listener = decltype(listener);
    listener_ = std::make_unique<Listener>(std::move(listener));
    const TreeStore::ChangeReport report = [](void* to, std::uint64_t sequence,
                                              CVSMNotifyMsg* message) {
      (*static_cast<Listener*>(to))(sequence, *message);
    };
    core_->Listen(*listener_ ? report : nullptr, listener_.get());
  }

  /// Lists all checkpoints in a folder, the newest first, without opening the store.
  static Result<std::vector<StoredCheckpoint>> Checkpoints(const Wide& folder) {
    std::vector<StoredCheckpoint> found;
    DocumentError error;
    const auto add = [](void* to, const StoredCheckpoint& checkpoint) {
      static_cast<std::vector<StoredCheckpoint>*>(to)->push_back(checkpoint);
    };
    if (!TreeStore::Checkpoints(folder, add, &found, &error))
      return Error(ToUtf8(folder.get()), error);
    return found;
  }

 private:
  explicit Store(std::string name) : name_(std::move(name)) {}

  static void AddNote(void* to, StoreNoteKind kind, const char* note) {
    static_cast<std::vector<StoreNote>*>(to)->push_back({kind, note});
  }
  std::optional<Error> ErrorUnless(bool done) const {
    if (done) return {};
    return Error(name_, core_->LastError());
  }
  Result<bool> Done(bool done) const {
    if (!done && core_->LastError().fault != DocumentFault::kNone)
      return Error(name_, core_->LastError());
    return done;
  }

  std::string name_;
  std::vector<StoreNote> notes_;
  std::unique_ptr<std::function<void(std::uint64_t, CVSMNotifyMsg&)>> listener_;
  Owned<TreeStore, TreeStore::Delete> core_;  // last: its end may still call the listener
};

}  // namespace vosmere
