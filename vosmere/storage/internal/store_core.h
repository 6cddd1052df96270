// StoreCore, the implementation of TreeStore: tree, log, undo and checkpoints.
#pragma once

#include <deque>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "vosmere/storage/internal/log_writer.h"
#include "vosmere/storage/internal/store_files.h"
#include "vosmere/storage/internal/stored_tree.h"
#include "vosmere/storage/internal/undo_stack.h"
#include "vosmere/storage/tree_store.h"
#include "vosmere/tree/tree_observer.h"

namespace vosmere {

class StoreCore : public TreeObserver {
 public:
  StoreCore(const WChar* folder, const StoreOptions& options);
  ~StoreCore() override;

  /// False with the reason in `error`.
  bool Open(TreeStore::Note note, void* to);

  StoredTree& tree() { return tree_; }
  std::uint64_t sequence() const { return sequence_; }
  bool SetTree(RNode* tree);
  bool Undo(Direction direction);
  bool Flush();
  bool Checkpoint();
  bool Changes(std::uint64_t after, TreeStore::ChangeReport report, void* to);
  void Listen(TreeStore::ChangeReport report, void* to) {
    report_ = report;
    reportTo_ = to;
  }
  bool Fail(DocumentFault fault, const std::string& reason, ULONG systemError = 0);

  DocumentError error;

  void Adding(RNode* parent, RNode* tree, RNode* before) override;
  void Moving(RNode* link, RNode* parent, RNode* before) override;
  void Removing(RNode* link) override;
  void Changing(RNode* link) override;
  void Changed(RNode* link) override;
  void Sorting(RNode* folder) override;
  void Sorted(RNode* folder) override;

 private:
  /// The state before a change that is being made: between Changing and Changed, or Sorting and
  /// Sorted.
  struct Before {
    RNode* link = nullptr;
    bool counts = false;  // false inside another change of the same link, which covers this one
    FieldValues fields;
    std::vector<std::uint64_t> order;
  };

  // Opening.
  bool TakeLock();
  bool Make();
  bool Load();
  bool LoadNewest();
  void PassAllLogs();
  bool LoadCheckpoint(std::uint64_t number);
  void ReplayFrom(std::uint64_t number);
  bool Replay(std::uint64_t number);
  bool ReplayRecords(RecordReader& reader, std::uint64_t number);
  bool MakeAgain(const Record& record, const char** problem);
  void StopAt(RecordReader& reader, std::uint64_t number, const std::string& problem);
  void GoOn();
  void SetBrokenAside();
  void Say(StoreNoteKind kind, const std::string& note);
  void Complain(const std::string& note) { Say(StoreNoteKind::kProblem, note); }

  // Changing.
  Before& Enter(RNode* link);
  void Keep(const Change& change);
  void Log(ChangeKind kind, std::string_view bytes, Direction direction);
  void Miss();
  bool IsWhole();
  void ObserveLocalTrees(RNode* top);
  template <class Do>
  void AfterChange(Do work);

  // Checkpoints and logs.
  bool BeginLog(std::uint64_t number);
  bool ContinueLog(std::uint64_t number);
  FileHeader HeaderOf(FileKind kind, std::uint64_t number);
  void RemoveOld();
  bool Loads(std::uint64_t checkpoint);

  const StoreOptions options_;
  StoreFiles files_;
  DiskFile lock_;
  StoredTree tree_;
  std::string identity_;
  std::uint64_t sequence_ = 0;

  std::unique_ptr<LogWriter> log_;
  bool missed_ = false;  // the log lacks a change that the tree has
  UndoStack undo_, redo_;
  std::deque<Before> under_;  // the first `depth_` are in use
  std::size_t depth_ = 0;
  FieldValues after_;
  Change change_;
  TreeStore::ChangeReport report_ = nullptr;
  void* reportTo_ = nullptr;

  std::set<std::uint64_t> loaded_;  // checkpoints that are known to load
  std::set<std::pair<FileKind, std::uint64_t>> broken_;
  std::string trouble_;  // why checkpoints did not load
  ULONG unread_ = 0;     // why the system could not read a log that is there
  bool isClean_ = true;  // the last log can be appended to
  std::uint64_t lastLog_ = 0;
  TreeStore::Note note_ = nullptr;
  void* noteTo_ = nullptr;
};

}  // namespace vosmere
