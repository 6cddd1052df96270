// A tree that is kept for years: every change is on the disk a moment later, and can be undone.
//
//   Result<Store> store = Store::Open("library");
//   if (!store) return Complain(store.error());      // library: another program has the store open
//   for (const std::string& note : store->notes()) std::cout << note << '\n';
//   Add<CFolderNode>(store->tree(), "Trips");        // in the log with the next flush
//   store->Undo();
//   if (std::optional<Error> error = store->Flush()) Complain(*error);
//
// Trees are changed with the operations of tree.h and walk.h, other fields within Update.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/storage/tree_store.h"

namespace vosmere {

/// A store that is open (storage/tree_store.h says what it promises). Flushed when it ends, but who
/// wants to know how that went flushes first.
class Store {
 public:
  /// The folder is UTF-8, or a text of the library.
  static Result<Store> Open(const Wide& folder, const StoreOptions& options = {}) {
    Store store(ToUtf8(folder.get()));
    DocumentError error;
    store.core_.reset(TreeStore::Open(folder, options, AddNote, &store.notes_, &error));
    if (!store.core_) return Error(store.name_, error);
    return store;
  }

  /// What opening had to say: which checkpoint was loaded, and what could not be used.
  const std::vector<std::string>& notes() const { return notes_; }

  /// The store's own: valid as long as that.
  RNode* tree() const { return core_->root(); }
  /// Another tree in its place, with the local trees of its collections.
  std::optional<Error> SetTree(Tree tree) { return ErrorUnless(core_->SetTree(tree.release())); }

  /// A number that names an item for as long as the store is there; 0 for none.
  std::uint64_t NumberOf(Link link) const { return core_->NumberOf(link); }
  RNode* LinkOf(std::uint64_t number) const { return core_->LinkOf(number); }

  /// Whether there was a change to undo.
  Result<bool> Undo() { return Done(core_->Undo()); }
  Result<bool> Redo() { return Done(core_->Redo()); }

  std::optional<Error> Flush() { return ErrorUnless(core_->Flush()); }
  std::optional<Error> Checkpoint() { return ErrorUnless(core_->Checkpoint()); }

  std::uint64_t sequence() const { return core_->sequence(); }
  /// Calls `use(sequence, message)` with every change after that one that the logs still have.
  template <class Use>
  std::optional<Error> Changes(std::uint64_t after, Use use) const {
    return ErrorUnless(core_->Changes(
        after,
        [](void* to, std::uint64_t sequence, CVSMNotifyMsg* message) {
          (*static_cast<Use*>(to))(sequence, *message);
        },
        &use));
  }
  /// Has every change told when it is made, also by Undo and Redo; an empty function ends that.
  void Listen(std::function<void(std::uint64_t sequence, CVSMNotifyMsg& message)> listener) {
    using Listener = decltype(listener);
    listener_ = std::make_unique<Listener>(std::move(listener));
    const TreeStore::ChangeReport report = [](void* to, std::uint64_t sequence,
                                              CVSMNotifyMsg* message) {
      (*static_cast<Listener*>(to))(sequence, *message);
    };
    core_->Listen(*listener_ ? report : nullptr, listener_.get());
  }

  /// Every checkpoint, the newest first.
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

  static void AddNote(void* to, const char* note) {
    static_cast<std::vector<std::string>*>(to)->emplace_back(note);
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
  std::vector<std::string> notes_;
  std::unique_ptr<std::function<void(std::uint64_t, CVSMNotifyMsg&)>> listener_;
  Owned<TreeStore, TreeStore::Delete> core_;  // ends before what it tells
};

}  // namespace vosmere
