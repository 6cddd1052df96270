// The system's own calls behind disk.h, which alone uses them. Each returns the system's error
// number, 0 for success.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vosmere/base/types.h"

namespace vosmere::disk_calls {

using Handle = std::intptr_t;

enum class Opening { kToRead, kToUpdate, kToHold, kNew, kNewPrivate };

ULONG Open(const WChar* path, Opening opening, Handle* handle);
/// One call, which may write less.
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
/// Whether a call was broken off before it did anything, and is to be made again.
bool IsInterrupted(ULONG error);
/// For a disk that takes nothing and says no more.
ULONG NoProgress();

}  // namespace vosmere::disk_calls
