// What the library asks the system's shell: where the Favorites are, and where a shortcut leads.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// Units of the longest path that the shell deals in, its terminating zero included.
inline constexpr int kShellPathLimit = 260;

/// The current user's Favorites folder; on Windows the shell's answer, elsewhere the one of the
/// profile that stands for the registry (registry.h). False, with an empty text, when there is
/// none: an exported registry file belongs to no folder, for instance.
bool FavoritesFolder(WChar (&path)[kShellPathLimit]);

/// Frees what the shell hands out.
class ShellAllocator {
 public:
  ShellAllocator();
  ShellAllocator(const ShellAllocator&) = delete;
  ShellAllocator& operator=(const ShellAllocator&) = delete;
  ~ShellAllocator();

  /// Null is ignored.
  void Free(WChar* text) const;

 private:
  void* allocator_;
};

/// The address that an Internet shortcut file leads to, in the shell's memory; null when the file
/// cannot be read or holds none, and without memory, which LostTexts counts. On Windows the shell's
/// own shortcut object is asked, which needs COM and a single-threaded apartment: a thread without
/// COM has it for the time of the call, and one of the multithreaded apartment has a thread started
/// that asks.
WChar* ShortcutAddress(const WChar* path);

}  // namespace vosmere
