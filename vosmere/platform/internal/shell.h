// Services of the system's shell: the Favorites folder, and the address in a shortcut file.
#pragma once

#include "vosmere/base/types.h"

namespace vosmere {

/// The longest path of the shell in code units, including the terminating null.
inline constexpr int kShellPathLimit = 260;

/// Gets the current user's Favorites folder: on Windows from the shell, on other systems from the
/// profile that the registry file belongs to (registry.h). False, with an empty text, when there is
/// none; for example, an exported registry file belongs to no folder.
bool FavoritesFolder(WChar (&path)[kShellPathLimit]);

/// Frees texts that the shell has allocated.
class ShellAllocator {
 public:
  ShellAllocator();
  ShellAllocator(const ShellAllocator&) = delete;
  ShellAllocator& operator=(const ShellAllocator&) = delete;
  ~ShellAllocator();

  /// Frees a text. Null is ignored.
  void Free(WChar* text) const;

 private:
  void* allocator_;
};

/// Returns the address in an Internet shortcut file. The shell allocates the text; free it with
/// ShellAllocator. Null when the file cannot be read or contains no address, and when memory runs
/// out, which LostTexts counts.
///
/// On Windows the shell's own shortcut object reads the file. It needs COM and a single-threaded
/// apartment: on a thread without COM it is initialised for the duration of the call, and for a
/// thread of the multithreaded apartment a new thread does the work.
WChar* ShortcutAddress(const WChar* path);

}  // namespace vosmere
