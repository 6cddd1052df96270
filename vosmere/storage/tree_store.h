// A folder in which a program keeps a tree permanently: the last checkpoints of the tree, and a log
// of every change since. Programs use it through vosmere/cpp/store.h.
#pragma once

#include <cstdint>

#include "vosmere/base/document_error.h"
#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

class CVSMNotifyMsg;
struct RNode;

/// Options for opening a store. A plain value.
struct StoreOptions {
  int keep = 3;  ///< how many checkpoints are kept, at least 1
  /// A change is flushed at most this long after it was made, plus the time that the flush takes.
  int groupMilliseconds = 50;
  bool readOnly = false;  ///< writes nothing; another program may have the store open
  bool create = true;     ///< creates the store if there is none
  /// How many bytes of changes are kept for Undo; the last change is always kept. Up to twice as
  /// much memory is used.
  std::uint64_t undoBytes = 16 << 20;
  /// Opens this checkpoint without the changes after it; 0 opens the newest state.
  std::uint64_t checkpoint = 0;
};

/// One checkpoint. A plain value.
struct StoredCheckpoint {
  std::uint64_t number = 0;
  bool loads = false;
  char problem[192] = {};     ///< why it does not load; UTF-8, one line
  std::uint64_t items = 0;    ///< the number that it states itself; 0 if it cannot be read
  std::uint64_t changes = 0;  ///< how many changes the store had had by then
  std::uint64_t time = 0;     ///< seconds since 1970
  unsigned char digest[16] = {};
};

/// What a message from opening a store is about.
enum class StoreNoteKind {
  kState,    ///< which checkpoint was loaded, and how many changes were made after it; always there
  kProblem,  ///< what could not be read, used or written, and which files were set aside for it
};

/// An open store. One program at a time can have it open for writing; the lock ends with Delete or
/// with the process. Others can open it read-only. The store and its tree may only be used by one
/// thread at a time.
///
/// What is logged: every change that the functions of vosmere/cpp/tree.h and walk.h make, and
/// fields that are set inside Update. Changes made in other ways are not logged and cannot be
/// undone; the next checkpoint contains them.
///
/// What can be lost:
/// - If the program crashes or is killed: the changes that have not been written yet, which are
///   those of the last `groupMilliseconds` and of a write that is under way. All changes before
///   them are kept.
/// - If the power fails: the same, because each group of changes is flushed when it is written.
/// - After Flush or Checkpoint has returned true: nothing that was changed before.
/// - If a checkpoint becomes unreadable: nothing, as long as an older one and the logs since then
///   can be read. Otherwise Open returns what can be read and says what is missing.
/// - Undo steps: those beyond `undoBytes`, and all of them after SetTree or after a change that
/// could
///   not be logged.
///
/// If the log cannot be written (for example because the disk is full), changes are still made to
/// the tree in memory. Flush and the operations after it then try to write a checkpoint instead and
/// report the error until one succeeds; after that nothing is missing.
///
/// When a collection is removed, the pages of the tree that refer to it
/// (CUrlProp::SetRefColctRNode) no longer refer to anything. Undo restores these references too.
///
/// Operations return false on failure, with the reason in LastError(). Only std::bad_alloc is
/// thrown. An operation that throws has changed nothing; Undo and Redo may have changed some of the
/// fields that they change, and can be called again.
class VOSMERE_API TreeStore {
 public:
  /// Receives a message about opening: UTF-8, one line, no full stop, only valid during the call.
  using Note = void (*)(void* to, StoreNoteKind kind, const char* note);
  /// Receives one change. The message is only valid during the call.
  using ChangeReport = void (*)(void* to, std::uint64_t sequence, CVSMNotifyMsg* message);

  /// Loads the newest checkpoint that can be read and makes the logged changes since. Notes say
  /// which one it was, why newer ones could not be loaded and how many items they had, and which
  /// part of the log could not be used. Broken files are renamed to names with the time, never
  /// overwritten. A relative `folder` is resolved once.
  ///
  /// Null, with the reason in `error`, if no checkpoint can be loaded, if another program has the
  /// store open, or if the system cannot read the folder or a log in it (read-only, it is opened
  /// without what cannot be read). The caller frees the store with Delete.
  static TreeStore* Open(const WChar* folder, const StoreOptions& options, Note note, void* to,
                         DocumentError* error);
  /// Flushes and closes the store. A flush that fails here is not reported: call Flush before.
  static void Delete(TreeStore* store);

  TreeStore(const TreeStore&) = delete;
  TreeStore& operator=(const TreeStore&) = delete;

  /// The tree, never null. The store owns it, with the local trees of its collections.
  RNode* root();
  /// Replaces the tree (a new store has an empty folder) and writes a checkpoint. The store takes
  /// ownership of `tree` and of the local trees of its collections, also on failure. Earlier
  /// changes cannot be undone afterwards.
  bool SetTree(RNode* tree);

  /// The number of a link; 0 if it is not in the store. A link keeps its number when it is moved,
  /// and when it is removed and restored by Undo.
  std::uint64_t NumberOf(const RNode* link);
  /// The link with this number; null if it is not in the store.
  RNode* LinkOf(std::uint64_t number);

  /// Undoes or redoes one change. False without an error if there is none. Restored links are new
  /// objects with the old numbers.
  bool Undo();
  bool Redo();

  /// Returns true once every change is on disk.
  bool Flush();
  /// Writes the whole tree to a new checkpoint, reads it back, begins a new log, and deletes
  /// checkpoints and logs that are older than the ones to keep. If it fails, the old checkpoints
  /// and the log are still there.
  bool Checkpoint();

  /// How many changes there have been since the store was created.
  std::uint64_t sequence() const;
  /// Reports the changes after number `after`, as far back as there are logs. An item that the log
  /// does not describe is reported with its current name. False if a log cannot be read.
  bool Changes(std::uint64_t after, ChangeReport report, void* to);
  /// Sets a function that is called for every change when it is made, also by Undo and Redo; null
  /// turns this off. It is not called for a change for whose message memory runs out.
  void Listen(ChangeReport report, void* to);

  /// The error of the last operation that failed.
  const DocumentError& LastError() const;

  /// Reports all checkpoints in a folder, the newest first, without opening the store. False if the
  /// folder cannot be read.
  static bool Checkpoints(const WChar* folder, void (*report)(void* to, const StoredCheckpoint&),
                          void* to, DocumentError* error);

 private:
  struct Parts;
  explicit TreeStore(Parts* parts) : parts_(parts) {}
  ~TreeStore();

  Parts* parts_;
};

}  // namespace vosmere
