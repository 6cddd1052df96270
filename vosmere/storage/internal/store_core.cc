// Logging, undoing and checkpointing the changes of a tree.
#include "vosmere/storage/internal/store_core.h"

#include <algorithm>
#include <new>

#include "vosmere/platform/internal/clock.h"
#include "vosmere/storage/internal/change_message.h"
#include "vosmere/storage/internal/failure.h"

namespace vosmere {

StoreCore::StoreCore(const WChar* folder, const StoreOptions& options)
    : options_(options), files_(folder) {}

StoreCore::~StoreCore() {
  StopObserving();
}

bool StoreCore::Fail(DocumentFault fault, const std::string& reason, ULONG systemError) {
  return FailWith(&error, fault, reason, systemError);
}

namespace {

/// The roots of the local trees at and below a link.
std::vector<const RNode*> LocalTreesOf(RNode* top) {
  std::vector<const RNode*> roots;
  StoredTree::Walk(top, [&](RNode* link, RNode*, bool isLocal) {
    if (isLocal) roots.push_back(link);
    return true;
  });
  return roots;
}

/// Needs no memory.
void ForgetTrees(const std::vector<const RNode*>& roots) {
  for (const RNode* const root : roots) TreeObserver::Observe(root, nullptr);
}

}  // namespace

void StoreCore::ObserveLocalTrees(RNode* top) {
  for (const RNode* const root : LocalTreesOf(top)) TreeObserver::Observe(root, this);
}

// Changing.

void StoreCore::Miss() {
  missed_ = true;
  undo_.Clear();
  redo_.Clear();
}

/// Does what follows from a change that has been made already, so that it cannot fail any more. If
/// memory runs out, the next flush has to write a checkpoint.
template <class Do>
void StoreCore::AfterChange(Do work) {
  try {
    work();
  } catch (const std::bad_alloc&) {
    missed_ = true;
  }
}

/// Whether the log has every change of the tree.
bool StoreCore::IsWhole() {
  ULONG failure = 0;
  missed_ = missed_ || (log_ && log_->Failed(&failure));
  return log_ && !missed_;
}

void StoreCore::Log(ChangeKind kind, std::string_view bytes, Direction direction) {
  ++sequence_;
  AfterChange([&] {
    if (IsWhole()) log_->Append({sequence_, static_cast<unsigned>(kind), direction, false, bytes});
    if (!report_) return;
    const OwnedMessage message = MessageOf(tree_, kind, bytes, direction == Direction::kUndone);
    report_(reportTo_, sequence_, message.get());
  });
}

void StoreCore::Keep(const Change& change) {
  undo_.Push(change.kind, change.bytes, options_.undoBytes);
  redo_.Clear();
  Log(change.kind, change.bytes, Direction::kDone);
}

void StoreCore::Adding(RNode* parent, RNode* tree, RNode* before) {
  const std::uint64_t first = tree_.nextNumber();
  change_.bytes.clear();
  try {
    ObserveLocalTrees(tree);
    if (tree_.DescribeAdding(parent, tree, before, &change_))
      Keep(change_);
    else
      Miss();  // where the store knows of nothing
  } catch (...) {
    tree_.ForgetFrom(first);
    throw;
  }
}

void StoreCore::Moving(RNode* link, RNode* parent, RNode* before) {
  change_.bytes.clear();
  if (tree_.DescribeMoving(link, parent, before, &change_))
    Keep(change_);
  else
    Miss();
}

void StoreCore::Removing(RNode* link) {
  const std::vector<const RNode*> localTrees = LocalTreesOf(link);
  StoredTree::Removal removal;
  change_.bytes.clear();
  if (tree_.DescribeRemoving(link, &change_, &removal)) {
    Keep(change_);
    tree_.Forget(removal);
  } else {
    Miss();
  }
  ForgetTrees(localTrees);
}

/// What is looked at before a change, in memory that was used for the last one.
StoreCore::Before& StoreCore::Enter(RNode* link) {
  const auto end = under_.begin() + static_cast<std::ptrdiff_t>(depth_);
  const bool nested =
      std::any_of(under_.begin(), end, [&](const Before& under) { return under.link == link; });
  if (depth_ == under_.size()) under_.emplace_back();
  Before& before = under_[depth_];
  before.link = link;
  before.counts = !nested;
  return before;
}

void StoreCore::Changing(RNode* link) {
  Before& before = Enter(link);
  if (before.counts) tree_.TakeFields(link, &before.fields);
  ++depth_;
}

void StoreCore::Changed(RNode* link) {
  const Before& before = under_[--depth_];
  if (!before.counts) return;
  try {
    if (!tree_.NumberOf(link)) return Miss();
    change_.bytes.clear();
    if (tree_.DescribeFields(link, before.fields, &after_, &change_)) Keep(change_);
  } catch (const std::bad_alloc&) {
    Miss();
  }
}

void StoreCore::Sorting(RNode* folder) {
  Before& before = Enter(folder);
  before.counts = tree_.TakeOrder(folder, &before.order);
  ++depth_;
}

void StoreCore::Sorted(RNode* folder) {
  const Before& before = under_[--depth_];
  try {
    if (!before.counts) return Miss();
    change_.bytes.clear();
    if (tree_.DescribeSorting(folder, before.order, &change_)) Keep(change_);
  } catch (const std::bad_alloc&) {
    Miss();
  }
}

bool StoreCore::SetTree(RNode* tree) {
  StoredTree next;
  next.SetNextNumber(tree_.nextNumber());
  next.SetRoot(tree);
  std::vector<const RNode*> before = LocalTreesOf(tree_.root());
  before.push_back(tree_.root());
  ObserveLocalTrees(tree);
  TreeObserver::Observe(tree, this);
  ForgetTrees(before);
  tree_.Swap(next);
  Miss();
  ++sequence_;
  return Checkpoint();
}

bool StoreCore::Undo(Direction direction) {
  error = {};
  if (options_.readOnly) return Fail(DocumentFault::kCannotWrite, "the store is open to be read");
  if (!IsWhole() && !Checkpoint()) return false;
  const bool undone = direction == Direction::kUndone;
  UndoStack& from = undone ? undo_ : redo_;
  UndoStack& to = undone ? redo_ : undo_;
  if (from.empty()) return false;
  const Change change = from.Top();
  const bool comesOrGoes = change.kind == ChangeKind::kAdd || change.kind == ChangeKind::kRemove;
  RNode* const gone = tree_.SubjectOf(change.kind, change.bytes);
  std::vector<const RNode*> localTrees;
  if (gone && comesOrGoes) localTrees = LocalTreesOf(gone);
  to.Push(change.kind, change.bytes, options_.undoBytes);
  const char* problem = nullptr;
  try {
    if (!tree_.Make(change.kind, change.bytes, undone, &problem)) {
      Miss();
      return Fail(DocumentFault::kMalformed, std::string("this cannot be undone: ") + problem);
    }
  } catch (...) {
    to.Drop();
    missed_ = missed_ || change.kind == ChangeKind::kFields;
    throw;
  }
  from.Drop();
  ForgetTrees(localTrees);
  RNode* const back = tree_.SubjectOf(change.kind, change.bytes);
  if (back && comesOrGoes) AfterChange([&] { ObserveLocalTrees(back); });
  Log(change.kind, change.bytes, direction);
  return true;
}

bool StoreCore::Flush() {
  error = {};
  if (options_.readOnly) return true;
  ULONG failure = 0;
  if (IsWhole() && log_->Flush(&failure)) return true;
  return IsWhole() || Checkpoint();
}

// Checkpoints and logs.

FileHeader StoreCore::HeaderOf(FileKind kind, std::uint64_t number) {
  FileHeader header;
  header.kind = kind;
  header.identity = identity_;
  header.number = number;
  header.sequence = sequence_;
  header.nextNumber = tree_.nextNumber();
  header.count = tree_.count();
  header.time = static_cast<ULONG>(ClockSeconds());
  return header;
}

bool StoreCore::BeginLog(std::uint64_t number) {
  const FileHeader header = HeaderOf(FileKind::kChanges, number);
  std::string bytes;
  WriteHeader(header, bytes);
  DiskFile file;
  const PathText path = files_.Path(FileKind::kChanges, number);
  ULONG failure = 0;
  auto log = std::make_unique<LogWriter>(std::chrono::milliseconds(options_.groupMilliseconds));
  const bool begun =
      file.CreateNew(path.c_str(), false) && file.Write(bytes.data(), bytes.size()) && file.Flush();
  if (!begun) failure = file.error();
  if (begun) failure = FlushFolder(files_.folder().c_str());
  if (failure || !log->Begin(std::move(file), header, &failure))
    return Fail(DocumentFault::kCannotWrite, "a new log cannot be begun", failure);
  log_ = std::move(log);
  lastLog_ = number;
  return true;
}

bool StoreCore::ContinueLog(std::uint64_t number) {
  DiskFile file;
  const PathText path = files_.Path(FileKind::kChanges, number);
  auto log = std::make_unique<LogWriter>(std::chrono::milliseconds(options_.groupMilliseconds));
  ULONG failure = 0;
  if (!file.OpenToUpdate(path.c_str()) ||
      !log->Begin(std::move(file), HeaderOf(FileKind::kChanges, number), &failure))
    return false;
  log_ = std::move(log);
  return true;
}

// While the old log is whole, the new one begins first: it goes on from the old one, so that it
// counts with the new checkpoint and without it.
bool StoreCore::Checkpoint() {
  error = {};
  if (options_.readOnly) return Fail(DocumentFault::kCannotWrite, "the store is open to be read");
  if (!tree_.IsNumbered()) Miss();  // it was changed in a way that is not logged
  ULONG failure = 0;
  const bool whole = IsWhole() && log_->Flush(&failure);
  const std::uint64_t number = ++files_.highest;
  if (!whole) {
    if (!IsWhole() && missed_) ++sequence_;  // a change that no log has
    tree_.Renumber();
    ObserveLocalTrees(tree_.root());
    log_.reset();
  }
  if (whole && !BeginLog(number)) return false;
  const PathText path = files_.Path(FileKind::kCheckpoint, number);
  if (!WriteCheckpoint(path, HeaderOf(FileKind::kCheckpoint, number), tree_, &error)) return false;
  missed_ = false;
  loaded_.insert(number);
  if (!whole && !BeginLog(number)) return false;
  SetBrokenAside();
  RemoveOld();
  return true;
}

bool StoreCore::Loads(std::uint64_t checkpoint) {
  if (loaded_.count(checkpoint)) return true;
  const bool loads =
      ReadCheckpoint(files_.Path(FileKind::kCheckpoint, checkpoint), nullptr).problem.empty();
  if (loads) loaded_.insert(checkpoint);
  return loads;
}

// What does not load does not count, and is left for the next opening to set aside.
void StoreCore::RemoveOld() {
  ULONG failure = 0;
  if (!files_.List(&failure)) return;
  int kept = 0;
  std::uint64_t oldest = 0;
  for (auto number = files_.checkpoints.rbegin(); number != files_.checkpoints.rend(); ++number) {
    if (kept >= std::max(options_.keep, 1)) {
      RemoveDiskFile(files_.Path(FileKind::kCheckpoint, *number).c_str());
    } else if (Loads(*number)) {
      ++kept;
      oldest = *number;
    }
  }
  if (kept < std::max(options_.keep, 1)) return;
  for (const std::uint64_t log : files_.logs)
    if (log < oldest) RemoveDiskFile(files_.Path(FileKind::kChanges, log).c_str());
}

bool StoreCore::Changes(std::uint64_t after, TreeStore::ChangeReport report, void* to) {
  error = {};
  ULONG failure = 0;
  if (!options_.readOnly && log_) log_->Flush(&failure);
  if (!files_.List(&failure))
    return Fail(DocumentFault::kCannotRead, "the folder cannot be read", failure);
  for (const std::uint64_t log : files_.logs) {
    DiskFile file;
    if (!file.OpenToRead(files_.Path(FileKind::kChanges, log).c_str()))
      return Fail(DocumentFault::kCannotRead, "a log cannot be read", file.error());
    RecordReader reader(file);
    Record record;
    if (!reader.ReadHeader(FileKind::kChanges) || reader.header().identity != identity_) continue;
    while (reader.Next(&record) == RecordReader::State::kRecord) {
      if (record.sequence <= after || record.sequence > sequence_) continue;
      const OwnedMessage message =
          MessageOf(tree_, static_cast<ChangeKind>(record.kind), record.contents,
                    record.direction == Direction::kUndone);
      report(to, record.sequence, message.get());
    }
  }
  return true;
}

}  // namespace vosmere
