// The steps of a safe save: find, lock, write, flush, compare, replace.
#include "vosmere/storage/internal/safe_file.h"

#include <chrono>
#include <thread>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/folder.h"
#include "vosmere/platform/internal/uuid.h"
#include "vosmere/storage/internal/failure.h"

namespace vosmere {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(10);
// New files are called ".NAME.IDENTITY.saving", with as much of the name as every system takes.
constexpr std::size_t kMostNameUnits = 60;
constexpr char kEnding[] = ".saving";
constexpr std::size_t kEndingLength = sizeof kEnding - 1;

PathText LeftOverStart(const PathText& name) {
  std::size_t length = std::min(name.size(), kMostNameUnits);
  if (length < name.size() && IsHighSurrogate(name[length - 1])) --length;
  return PathOf(".") + name.substr(0, length) + PathOf(".");
}

/// Locks it, or goes on without a lock where the file system has none.
bool LockIfPossible(DiskFile& file) {
  return file.TryLock() || HasNoLocks(file.error());
}

bool IsLeftOver(const PathText& name, const PathText& start) {
  return name.size() == start.size() + kUuidTextLength + kEndingLength && name.starts_with(start) &&
         name.ends_with(PathOf(kEnding));
}

}  // namespace

SafeFile::~SafeFile() {
  writer_.Close();
  holder_.Close();
  if (temporary_.empty()) return;
  RemoveDiskFile(temporary_.c_str());
}

bool SafeFile::Fail(DocumentFault fault, const char* reason, ULONG systemError) {
  return FailWith(&error_, fault, reason, systemError);
}

bool SafeFile::Find(const WChar* path) {
  if (!path || !*path) return Fail(DocumentFault::kCannotOpen, "no file was named");
  PathKind kind = PathKind::kNothing;
  if (const ULONG error = FindTarget(path, &target_, &kind))
    return Fail(DocumentFault::kCannotOpen, "cannot be written", error);
  if (kind == PathKind::kFolder) return Fail(DocumentFault::kCannotOpen, "is a folder");
  if (kind == PathKind::kLinkToNothing)
    return Fail(DocumentFault::kCannotOpen, "is a link to nothing");
  if (kind == PathKind::kOther) return Fail(DocumentFault::kCannotOpen, "is not a plain file");
  const std::size_t start = NameStart(target_);
  folder_ = start ? target_.substr(0, start) : PathOf("./");
  name_ = target_.substr(start);
  isThere_ = kind == PathKind::kFile;
  if (!isThere_ || old_.OpenToHold(target_.c_str())) return true;
  return Fail(DocumentFault::kCannotOpen, "cannot be written", old_.error());
}

bool SafeFile::Begin(const WChar* path) {
  if (!Find(path) || (isThere_ && !HoldOld())) return false;
  RemoveLeftOvers();
  return MakeNew();
}

// Who saves at the same moment may put a new file there while we wait for the lock of the old one.
bool SafeFile::HoldOld() {
  const auto deadline = Clock::now() + kPatience;
  while (Clock::now() < deadline) {
    if (!old_.OpenToHold(target_.c_str()))
      return IsNotThere(old_.error()) ||
             Fail(DocumentFault::kCannotOpen, "cannot be written", old_.error());
    bool locked = LockIfPossible(old_);
    for (int pause = 0; !locked && Clock::now() < deadline; locked = LockIfPossible(old_)) {
      if (old_.error()) return Fail(DocumentFault::kCannotOpen, "cannot be locked", old_.error());
      std::this_thread::sleep_for(std::chrono::milliseconds(std::min(++pause, 20)));
    }
    if (locked && old_.IsAt(target_.c_str())) return true;
  }
  return Fail(DocumentFault::kInUse, "another program is saving it");
}

bool SafeFile::MakeNew() {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    WChar identity[kUuidTextLength + 1];
    if (!NewUuidText(identity)) return Fail(DocumentFault::kCannotOpen, "there is no random name");
    temporary_ = folder_ + LeftOverStart(name_) + identity + PathOf(kEnding);
    if (!holder_.CreateNew(temporary_.c_str(), old_.IsOpen())) {
      temporary_.clear();
      return Fail(DocumentFault::kCannotOpen, "no file can be made in its folder", holder_.error());
    }
    const bool locked = LockIfPossible(holder_);
    if (!locked && holder_.error())
      return Fail(DocumentFault::kCannotOpen, "cannot be locked", holder_.error());
    // Until it is locked, another save may take it for a left-over.
    if (!locked || !holder_.IsAt(temporary_.c_str())) continue;
    // Before it has the rights of the old one, which may not let it be opened.
    if (!writer_.OpenToUpdate(temporary_.c_str()))
      return Fail(DocumentFault::kCannotOpen, "cannot be written", writer_.error());
    return !old_.IsOpen() || holder_.TakeOverRights(old_) ||
           Fail(DocumentFault::kCannotWrite, "its rights cannot be kept", holder_.error());
  }
  temporary_.clear();
  return Fail(DocumentFault::kInUse, "other programs take the new files away");
}

void SafeFile::RemoveLeftOvers() const {
  const PathText start = LeftOverStart(name_);
  FolderListing listing;
  if (!listing.Open(folder_.c_str())) return;
  while (listing.Next()) {
    const PathText name = listing.Name();
    if (!IsLeftOver(name, start)) continue;
    const PathText path = folder_ + name;
    DiskFile left;
    const bool opened = left.OpenToRead(path.c_str()) || left.OpenToHold(path.c_str());
    if (opened && left.TryLock()) RemoveDiskFile(path.c_str());
  }
}

bool SafeFile::Write(const void* bytes, std::size_t size) {
  return writer_.Write(bytes, size) ||
         Fail(DocumentFault::kCannotWrite, "cannot be written", writer_.error());
}

bool SafeFile::Stored() {
  const bool flushed = writer_.Flush();
  const ULONG error = writer_.error();
  const bool closed = writer_.Close();
  if (flushed && closed) return true;
  return Fail(DocumentFault::kCannotWrite, "what was written could not be stored",
              flushed ? writer_.error() : error);
}

bool SafeFile::IsExpected(const FileMark& expected) {
  FileMark now;
  DiskFile old;
  if (old_.IsOpen() && !(old.OpenToRead(target_.c_str()) && MarkOf(old, &now)))
    return Fail(DocumentFault::kCannotRead, "cannot be read", old.error());
  if (now == expected) return true;
  const auto held = [](const FileMark& mark) {
    return mark.isThere ? std::to_string(mark.size) + " bytes" : std::string("not there");
  };
  const std::string reason =
      "was changed since it was loaded: " + held(expected) + " then, " + held(now) + " now";
  return Fail(DocumentFault::kChanged, reason.c_str());
}

bool SafeFile::Replace(const FileMark* expected) {
  if (expected && !IsExpected(*expected)) return false;
  // While the old one is locked, nobody looks for left-overs; and Windows does not put a file into
  // the place of another while it is open.
  if (old_.IsOpen()) holder_.Close();
  const bool mustBeNew = expected && !expected->isThere;
  const ULONG error = mustBeNew ? MoveToNewPlace(temporary_.c_str(), target_.c_str())
                                : ReplaceDiskFile(temporary_.c_str(), target_.c_str());
  if (mustBeNew && IsAlreadyThere(error))
    return Fail(DocumentFault::kChanged, "was made by another program since");
  if (error) return Fail(DocumentFault::kCannotWrite, "cannot be replaced", error);
  temporary_.clear();
  if (const ULONG unflushed = FlushFolder(folder_.c_str()))
    return Fail(DocumentFault::kCannotWrite, "is saved, but the disk does not confirm it",
                unflushed);
  return true;
}

}  // namespace vosmere
