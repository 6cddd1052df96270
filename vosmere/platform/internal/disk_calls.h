// The system calls for disk.h; only disk.cc uses them. Each returns the system's error number, 0
// for success.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/types.h"

namespace vosmere::disk_calls {

using Handle = std::intptr_t;

enum class Opening { kToRead, kToUpdate, kToHold, kNew, kNewPrivate };

ULONG Open(const WChar* path, Opening opening, Handle* handle);
/// A single call, which may write fewer bytes.
ULONG WriteAt(Handle file, std::uint64_t position, const void* bytes, std::size_t size,
              std::size_t* written);
ULONG ReadAt(Handle file, std::uint64_t position, void* bytes, std::size_t capacity,
             std::size_t* got);
ULONG Flush(Handle file);
ULONG Size(Handle file, std::uint64_t* size);
ULONG Close(Handle file);
ULONG TryLock(Handle file, bool* locked);
ULONG IsAt(Handle file, const WChar* path, bool* isAt);
ULONG TakeOverRights(Handle from, Handle to);
ULONG Replace(const WChar* from, const WChar* to);
ULONG MoveNew(const WChar* from, const WChar* to);
ULONG Remove(const WChar* path);
ULONG MakeFolder(const WChar* path);
ULONG FlushFolder(const WChar* path);
/// Whether a call was interrupted before it did anything, so that it must be made again.
bool IsInterrupted(ULONG error);
/// The error for a disk that accepts no bytes and reports no error.
ULONG NoProgress();

}  // namespace vosmere::disk_calls
