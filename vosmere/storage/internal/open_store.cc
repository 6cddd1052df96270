// Opening a store: what it holds, and what cannot be read of it.
#include <algorithm>

#include "vosmere/platform/internal/uuid.h"
#include "vosmere/storage/internal/failure.h"
#include "vosmere/storage/internal/store_core.h"
#include "vosmere/tree/folder_node.h"

namespace vosmere {
namespace {

std::string Count(std::uint64_t count, const char* of) {
  return std::to_string(count) + " " + of + (count == 1 ? "" : "s");
}

std::string Name(FileKind kind, std::uint64_t number) {
  return (kind == FileKind::kCheckpoint ? "checkpoint-" : "changes-") + std::to_string(number);
}

}  // namespace

void StoreCore::Say(StoreNoteKind kind, const std::string& note) {
  if (note_) note_(noteTo_, kind, note.c_str());
}

bool StoreCore::Open(TreeStore::Note note, void* to) {
  note_ = note;
  noteTo_ = to;
  if (!options_.readOnly && !TakeLock()) return false;
  ULONG failure = 0;
  if (!files_.List(&failure))
    return Fail(DocumentFault::kCannotOpen, "the folder cannot be read", failure);
  const bool isNew = files_.isEmpty && !options_.readOnly && options_.create;
  const bool opened = files_.isEmpty ? isNew && Make() : Load();
  if (files_.isEmpty && !isNew)
    return Fail(DocumentFault::kCannotOpen, "there is no store in the folder");
  if (!opened) return false;
  ObserveLocalTrees(tree_.root());
  TreeObserver::Observe(tree_.root(), this);
  note_ = nullptr;
  return true;
}

bool StoreCore::TakeLock() {
  if (options_.create)
    if (const ULONG failure = MakeFolder(files_.folder().c_str()))
      return Fail(DocumentFault::kCannotOpen, "the folder cannot be made", failure);
  const PathText path = files_.LockPath();
  if (!lock_.OpenToUpdate(path.c_str()) && !lock_.CreateNew(path.c_str(), false) &&
      !(IsAlreadyThere(lock_.error()) && lock_.OpenToUpdate(path.c_str())))
    return Fail(DocumentFault::kCannotOpen, "the store cannot be locked", lock_.error());
  if (lock_.TryLock()) return true;
  if (lock_.error())
    return Fail(DocumentFault::kCannotOpen, "the store cannot be locked", lock_.error());
  return Fail(DocumentFault::kInUse, "another program has the store open");
}

bool StoreCore::Make() {
  WChar identity[kUuidTextLength + 1];
  if (!NewUuidText(identity))
    return Fail(DocumentFault::kCannotOpen, "there is no identity to give");
  identity_.assign(identity, identity + kUuidTextLength);
  tree_.SetRoot(NewLink(NT_FOLDER, true));
  return Checkpoint();
}

// A reader may find that the program which has the store has removed what it was about to read.
bool StoreCore::Load() {
  constexpr int kTries = 5;
  for (int i = 0; i < kTries; ++i) {
    ULONG failure = 0;
    trouble_.clear();
    broken_.clear();
    if (!files_.List(&failure))
      return Fail(DocumentFault::kCannotOpen, "the folder cannot be read", failure);
    unread_ = 0;
    const bool loaded = LoadNewest();
    // What is written now would go on without changes that may be whole.
    if (loaded && unread_ && !options_.readOnly)
      return Fail(DocumentFault::kCannotRead, "a log cannot be read", unread_);
    if (loaded) {
      if (!options_.readOnly) GoOn();
      return true;
    }
    if (!options_.readOnly) break;
  }
  return Fail(DocumentFault::kMalformed,
              trouble_.empty() ? "there is no checkpoint in the store" : trouble_);
}

bool StoreCore::LoadNewest() {
  if (options_.checkpoint) {
    isClean_ = false;
    if (!LoadCheckpoint(options_.checkpoint)) return false;
    if (!options_.readOnly) PassAllLogs();
    return true;
  }
  for (auto number = files_.checkpoints.rbegin(); number != files_.checkpoints.rend(); ++number) {
    if (!LoadCheckpoint(*number)) continue;
    ReplayFrom(*number);
    return true;
  }
  return false;
}

// What is made of an old checkpoint goes on from no log: its changes are counted from after all of
// theirs.
void StoreCore::PassAllLogs() {
  for (const std::uint64_t log : files_.logs) {
    DiskFile file;
    if (!file.OpenToRead(files_.Path(FileKind::kChanges, log).c_str())) continue;
    RecordReader reader(file);
    if (!reader.ReadHeader(FileKind::kChanges)) continue;
    sequence_ = std::max(sequence_, reader.header().sequence);
    Record record;
    while (reader.Next(&record) == RecordReader::State::kRecord)
      sequence_ = std::max(sequence_, record.sequence);
  }
  ++sequence_;
}

bool StoreCore::LoadCheckpoint(std::uint64_t number) {
  StoredTree tree;
  const CheckpointState state = ReadCheckpoint(files_.Path(FileKind::kCheckpoint, number), &tree);
  if (state.problem.empty()) {
    tree_.Swap(tree);
    identity_ = state.header.identity;
    sequence_ = state.header.sequence;
    loaded_.insert(number);
    Say(StoreNoteKind::kState,
        Name(FileKind::kCheckpoint, number) + " is loaded: " + Count(state.header.count, "item"));
    return true;
  }
  std::string why = Name(FileKind::kCheckpoint, number) + " does not load: " + state.problem;
  if (state.hasHeader) why += "; it would have held " + Count(state.header.count, "item");
  Complain(why);
  if (trouble_.empty()) trouble_ = why;
  isClean_ = false;
  if (!state.isGone) broken_.insert({FileKind::kCheckpoint, number});
  return false;
}

// Each log goes on where the one before ends, whether or not there is a checkpoint between them.
// One that does not go on from what was read is not used.
void StoreCore::ReplayFrom(std::uint64_t number) {
  const std::uint64_t before = sequence_;
  bool whole = true;
  for (const std::uint64_t log : files_.logs) {
    if (log < number) continue;
    const std::uint64_t from = sequence_;
    const bool read = Replay(log);
    whole = whole && read;
    if (read || sequence_ != from) lastLog_ = log;
  }
  isClean_ = isClean_ && whole && lastLog_ != 0 && lastLog_ == files_.logs.back() &&
             lastLog_ >= files_.checkpoints.back();
  Say(StoreNoteKind::kState, Count(sequence_ - before, "change") + " since then");
}

bool StoreCore::Replay(std::uint64_t number) {
  DiskFile file;
  const PathText path = files_.Path(FileKind::kChanges, number);
  if (!file.OpenToRead(path.c_str())) {
    Complain(Name(FileKind::kChanges, number) + " cannot be read: " + SystemMessage(file.error()));
    if (!IsNotThere(file.error())) unread_ = file.error();
    return false;
  }
  RecordReader reader(file);
  if (!reader.ReadHeader(FileKind::kChanges)) {
    StopAt(reader, number, reader.problem());
    return false;
  }
  if (reader.header().identity != identity_) {
    StopAt(reader, number, "it belongs to another store");
    return false;
  }
  if (reader.header().sequence != sequence_) {
    StopAt(reader, number,
           "it goes on from change " + std::to_string(reader.header().sequence) + ", not from " +
               std::to_string(sequence_));
    return false;
  }
  undo_.Reserve(reader.size(), options_.undoBytes);
  return ReplayRecords(reader, number);
}

bool StoreCore::ReplayRecords(RecordReader& reader, std::uint64_t number) {
  Record record;
  for (;;) {
    const std::uint64_t position = reader.position();
    const RecordReader::State next = reader.Next(&record);
    if (next == RecordReader::State::kEnd) return true;
    const char* problem = nullptr;
    if (next == RecordReader::State::kBad) {
      StopAt(reader, number, reader.problem());
      return false;
    }
    if (record.sequence == sequence_ + 1 && MakeAgain(record, &problem)) {
      ++sequence_;
      continue;
    }
    broken_.insert({FileKind::kChanges, number});
    Complain(Name(FileKind::kChanges, number) + " cannot be used from byte " +
             std::to_string(position) + " on: " + (problem ? problem : "a change is missing"));
    return false;
  }
}

bool StoreCore::MakeAgain(const Record& record, const char** problem) {
  const auto kind = static_cast<ChangeKind>(record.kind);
  const bool undone = record.direction == Direction::kUndone;
  if (!tree_.Make(kind, record.contents, undone, problem)) return false;
  if (record.direction == Direction::kDone) {
    undo_.Push(kind, record.contents, options_.undoBytes);
    redo_.Clear();
    return true;
  }
  UndoStack& from = undone ? undo_ : redo_;
  UndoStack& to = undone ? redo_ : undo_;
  from.Drop();
  to.Push(kind, record.contents, options_.undoBytes);
  return true;
}

void StoreCore::StopAt(RecordReader& reader, std::uint64_t number, const std::string& problem) {
  if (reader.systemError()) unread_ = reader.systemError();
  const std::uint64_t lost = reader.size() - reader.position();
  const bool broken = reader.position() == 0 ? reader.size() > 0 : reader.GoesOnLater(sequence_);
  std::string note = Name(FileKind::kChanges, number);
  if (broken) {
    broken_.insert({FileKind::kChanges, number});
    note += " cannot be used from byte " + std::to_string(reader.position()) + " on: ";
  } else {
    note += " ends with " + Count(lost, "byte") + " that were not written to the end: ";
  }
  Complain(note + problem);
}

// A log whose end cannot be read is not written to again: a new one begins.
void StoreCore::GoOn() {
  if (isClean_ && ContinueLog(lastLog_)) return;
  if (!Checkpoint()) Complain(std::string("nothing can be written now: ") + error.reason);
}

void StoreCore::SetBrokenAside() {
  if (broken_.empty()) return;
  for (const auto& [kind, number] : broken_)
    if (files_.SetAside(kind, number)) Complain(Name(kind, number) + " is set aside");
  files_.Flush();
  broken_.clear();
}

}  // namespace vosmere
