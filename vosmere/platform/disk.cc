#include <algorithm>
#include <atomic>

#include "vosmere/platform/internal/disk.h"
#include "vosmere/platform/internal/disk_calls.h"

namespace vosmere {
namespace {

std::atomic<DiskWatch*> watch{nullptr};

/// Makes a call that changes the disk a single time, even if it is interrupted.
template <class Make>
ULONG MakeOnce(const DiskCall& call, Make make) {
  DiskWatch* const watching = watch.load(std::memory_order_acquire);
  std::size_t most = SIZE_MAX;
  if (!watching) return make(most);
  ULONG error = watching->Before(call, &most);
  if (error == 0) error = make(most);
  watching->After(call, error);
  return error;
}

template <class Make>
ULONG UntilNotInterrupted(Make make) {
  ULONG error = make();
  while (disk_calls::IsInterrupted(error)) error = make();
  return error;
}

template <class Make>
ULONG Change(const DiskCall& call, Make make) {
  return UntilNotInterrupted(
      [&] { return MakeOnce(call, [&](std::size_t most) { return most ? make() : 0; }); });
}

}  // namespace

void WatchDiskForTesting(DiskWatch* newWatch) {
  watch.store(newWatch, std::memory_order_release);
}

DiskFile& DiskFile::operator=(DiskFile&& other) noexcept {
  std::swap(handle_, other.handle_);
  path_.swap(other.path_);
  std::swap(end_, other.end_);
  std::swap(written_, other.written_);
  std::swap(error_, other.error_);
  return *this;
}

bool DiskFile::Opened(std::intptr_t handle, const WChar* path) {
  handle_ = handle;
  path_ = path;
  written_ = false;
  end_ = 0;
  return Size(&end_);
}

template <class Opening>
bool DiskFile::Open(const WChar* path, Opening opening) {
  Close();
  disk_calls::Handle handle = kNone;
  return Keep(UntilNotInterrupted([&] { return disk_calls::Open(path, opening, &handle); })) &&
         Opened(handle, path);
}

bool DiskFile::OpenToRead(const WChar* path) {
  return Open(path, disk_calls::Opening::kToRead);
}

bool DiskFile::OpenToUpdate(const WChar* path) {
  return Open(path, disk_calls::Opening::kToUpdate);
}

bool DiskFile::OpenToHold(const WChar* path) {
  return Open(path, disk_calls::Opening::kToHold);
}

bool DiskFile::CreateNew(const WChar* path, bool isPrivate) {
  Close();
  disk_calls::Handle handle = kNone;
  const auto opening = isPrivate ? disk_calls::Opening::kNewPrivate : disk_calls::Opening::kNew;
  return Keep(Change({DiskCall::kCreate, path},
                     [&] { return disk_calls::Open(path, opening, &handle); })) &&
         Opened(handle, path);
}

bool DiskFile::TryLock() {
  bool locked = false;
  return Keep(Change({DiskCall::kLock, path_.c_str()},
                     [&] { return disk_calls::TryLock(handle_, &locked); })) &&
         locked;
}

bool DiskFile::IsAt(const WChar* path) {
  bool isAt = false;
  return Keep(disk_calls::IsAt(handle_, path, &isAt)) && isAt;
}

bool DiskFile::TakeOverRights(const DiskFile& other) {
  return Keep(Change({DiskCall::kTakeOver, path_.c_str()},
                     [&] { return disk_calls::TakeOverRights(other.handle_, handle_); }));
}

bool DiskFile::ReadAt(std::uint64_t position, void* bytes, std::size_t capacity, std::size_t* got) {
  return Keep(UntilNotInterrupted(
      [&] { return disk_calls::ReadAt(handle_, position, bytes, capacity, got); }));
}

bool DiskFile::Write(const void* bytes, std::size_t size) {
  auto* at = static_cast<const char*>(bytes);
  while (size > 0) {
    std::size_t done = 0;
    const DiskCall call{DiskCall::kWrite, path_.c_str(), nullptr, {at, size}, end_};
    written_ = true;
    const ULONG error = UntilNotInterrupted([&] {
      return MakeOnce(call, [&](std::size_t most) {
        return disk_calls::WriteAt(handle_, end_, at, std::min(size, most), &done);
      });
    });
    if (!Keep(error == 0 && done == 0 ? disk_calls::NoProgress() : error)) return false;
    at += done;
    end_ += done;
    size -= done;
  }
  return true;
}

bool DiskFile::Flush() {
  return Keep(
      Change({DiskCall::kFlush, path_.c_str()}, [&] { return disk_calls::Flush(handle_); }));
}

bool DiskFile::Size(std::uint64_t* size) {
  return Keep(disk_calls::Size(handle_, size));
}

// Never called twice, because the handle is released even if closing fails. If closing was
// interrupted, nothing that was flushed before is lost.
bool DiskFile::Close() {
  if (!IsOpen()) return true;
  const disk_calls::Handle handle = std::exchange(handle_, kNone);
  if (!written_) return Keep(disk_calls::Close(handle));
  bool closed = false;
  const ULONG error = MakeOnce({DiskCall::kClose, path_.c_str()}, [&](std::size_t) {
    closed = true;
    return disk_calls::Close(handle);
  });
  if (!closed) disk_calls::Close(handle);
  return disk_calls::IsInterrupted(error) || Keep(error);
}

bool DiskFile::Keep(ULONG error) {
  error_ = error;
  return error == 0;
}

ULONG ReplaceDiskFile(const WChar* from, const WChar* to) {
  return Change({DiskCall::kReplace, from, to}, [&] { return disk_calls::Replace(from, to); });
}

ULONG MoveToNewPlace(const WChar* from, const WChar* to) {
  return Change({DiskCall::kMoveNew, from, to}, [&] { return disk_calls::MoveNew(from, to); });
}

ULONG RemoveDiskFile(const WChar* path) {
  return Change({DiskCall::kRemove, path}, [&] { return disk_calls::Remove(path); });
}

ULONG MakeFolder(const WChar* path) {
  return Change({DiskCall::kMakeFolder, path}, [&] { return disk_calls::MakeFolder(path); });
}

ULONG FlushFolder(const WChar* path) {
  return Change({DiskCall::kFlushFolder, path}, [&] { return disk_calls::FlushFolder(path); });
}

std::size_t NameStart(const PathText& path) {
  std::size_t at = path.size();
  while (at > 0 && path[at - 1] != '/' && path[at - 1] != '\\') --at;
  return at;
}

}  // namespace vosmere
