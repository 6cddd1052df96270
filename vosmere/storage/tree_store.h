// A place in which a program keeps a tree for years: the last checkpoints of it, and every change
// since, in one folder. vosmere/cpp/store.h is the handle to use it by.
#pragma once

#include <cstdint>

#include "vosmere/base/document_error.h"
#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

class CVSMNotifyMsg;
struct RNode;

/// How a store is opened. A plain value.
struct StoreOptions {
  int keep = 3;  ///< checkpoints that stay, at least 1
  /// A change is on the disk at most so much later, and the time that a flush takes.
  int groupMilliseconds = 50;
  bool readOnly = false;  ///< somebody else may hold it; nothing is written
  bool create = true;     ///< where there is none
  /// Bytes of changes that undo keeps in memory; the last change is always kept.
  std::uint64_t undoBytes = 16 << 20;
  /// Opens this checkpoint as it was, without the changes since; 0 opens the newest.
  std::uint64_t checkpoint = 0;
};

/// One checkpoint. A plain value.
struct StoredCheckpoint {
  std::uint64_t number = 0;
  bool loads = false;
  char problem[192] = {};     ///< why it does not; UTF-8, one line
  std::uint64_t items = 0;    ///< as it says itself; 0 when it cannot be read
  std::uint64_t changes = 0;  ///< of the store, until then
  std::uint64_t time = 0;     ///< seconds since 1970
  unsigned char digest[16] = {};
};

/// A store that is open. It is one program's, until it is closed or its process ends; others may
/// open it to read. One thread at a time uses the store and its tree.
///
/// The operations of vosmere/cpp/tree.h that change the tree are in the log before the next flush
/// of the group. A change that the log cannot take (the disk is full) is made all the same, and is
/// reported by Flush and every operation after it; each of them tries to write a checkpoint
/// instead, and once that succeeds nothing is missing.
///
/// When a collection is removed, the pages in the tree that refer to it
/// (CUrlProp::SetRefColctRNode) refer to nothing any more. Undo restores that, too.
///
/// Nothing throws but std::bad_alloc. Operations are false on failure, with the reason in
/// LastError().
class VOSMERE_API TreeStore {
 public:
  /// What Open has to say beside success: UTF-8, one line, no full stop.
  using Note = void (*)(void* to, const char* note);
  /// One change; the message lives during the call.
  using ChangeReport = void (*)(void* to, std::uint64_t sequence, CVSMNotifyMsg* message);

  /// The newest checkpoint that loads, with the changes since. Notes say which it was, why newer
  /// ones did not load and how much they would have held, and what of the log could not be used.
  /// What is broken is set aside under a name with the time, never overwritten.
  ///
  /// Null with the reason when there is nothing that loads, when another program holds the store,
  /// and when it cannot be read. The caller frees it with Delete, which flushes.
  static TreeStore* Open(const WChar* folder, const StoreOptions& options, Note note, void* to,
                         DocumentError* error);
  static void Delete(TreeStore* store);

  TreeStore(const TreeStore&) = delete;
  TreeStore& operator=(const TreeStore&) = delete;

  /// The tree, never null. The store frees it, the local trees of its collections included.
  RNode* root();
  /// A new store has an empty folder for a tree; this puts another into its place, with the local
  /// trees of its collections, all of which is the store's then, and makes a checkpoint. Undo ends
  /// there. When that fails the tree is the store's all the same.
  bool SetTree(RNode* tree);

  /// The number of a link, which it keeps as long as it is in the store, also when it is removed
  /// and comes back by Undo; 0 for one that is not there. The other way round null.
  std::uint64_t NumberOf(const RNode* link);
  RNode* LinkOf(std::uint64_t number);

  /// False, without an error, when there is nothing to undo or redo. Links that come back are new
  /// ones, with their numbers.
  bool Undo();
  bool Redo();

  /// Until every change is on the disk.
  bool Flush();
  /// Writes all of the tree, reads it back, begins a new log, and removes what is older than the
  /// checkpoints that stay.
  bool Checkpoint();

  /// How many changes the store has seen.
  std::uint64_t sequence() const;
  /// Reports the changes after that one, as far as the logs go back; names are those of now where
  /// the log does not say them. False when a log cannot be read.
  bool Changes(std::uint64_t after, ChangeReport report, void* to);
  /// Has every change reported when it is made; null ends that.
  void Listen(ChangeReport report, void* to);

  const DocumentError& LastError() const;

  /// Looks at every checkpoint, the newest first, without opening the store. False when the folder
  /// cannot be read.
  static bool Checkpoints(const WChar* folder, void (*report)(void* to, const StoredCheckpoint&),
                          void* to, DocumentError* error);

 private:
  struct Parts;
  explicit TreeStore(Parts* parts) : parts_(parts) {}
  ~TreeStore();

  Parts* parts_;
};

}  // namespace vosmere
