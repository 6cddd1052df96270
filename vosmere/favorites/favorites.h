#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"
#include "vosmere/favorites/favorite.h"
#include "vosmere/favorites/order_record.h"
#include "vosmere/platform/registry.h"

namespace vosmere {

class ShellAllocator;

/// Reads one level of the user's Favorites folder in the order of the Favorites menu.
///
/// The shell keeps that order in a value "Order" in the registry, under a key for each folder. What
/// the value names comes first, by its positions; then whatever else the directory holds, in the
/// file system's order and without "Desktop.ini". ImportFavorites (import_favorites.h) reads the
/// whole folder as a tree.
///
/// Lists handed out belong to the caller, who frees them with CFavorite::DeleteList; a result of 0
/// leaves an empty or shorter list, still to be freed. `head` may be null. With `resolve` not 0 the
/// address of every file is read; on Windows any thread can do that, and one in a single-threaded
/// apartment does it fastest. Directories are read, and paths joined, with either separator. Paths
/// of CFavorite::kNameLimit units or more are left out. One thread at a time.
///
/// Intended: an item whose file has been given another name since is listed twice, from the value
/// and from the directory, unless the two paths differ in ASCII case alone.
class VOSMERE_API CFavorites {
 public:
  /// Asks for the shell's allocator and the system's version. Throws std::bad_alloc.
  CFavorites();
  CFavorites(const CFavorites&) = delete;
  CFavorites& operator=(const CFavorites&) = delete;
  virtual ~CFavorites();

  /// Lists `dirPath` in the order of the key `regPath` under the current user. 0 when the key
  /// cannot be opened; otherwise the result of GetOrderBufferFromKey.
  int ExtractFavorites(const WChar* regPath, const WChar* dirPath, CFavorite** list,
                       COrderHead* head, int resolve);

  /// The same with an open key. Without a value "Order", and with an empty one, the directory alone
  /// makes the list, and the result is 1; 0 when the value cannot be read. `regPath` is not looked
  /// at.
  int GetOrderBufferFromKey(HKEY key, const WChar* regPath, const WChar* dirPath, CFavorite** list,
                            COrderHead* head, int resolve);

  /// The same with the value itself, which may be any bytes: what cannot be read as a record is
  /// left out. 1, or 0 when memory runs out. A value too short for its header counts as none.
  /// `key` and `regPath` are not looked at.
  /// Intended: a value of no records gives an empty list and 1, whatever the directory holds; and a
  /// record with an empty name gives an item, the directory's path and a separator, so that its
  /// place is not lost when the order is written back.
  int ExtractFavoritesFromOrderBuffer(HKEY key, const WChar* regPath, const WChar* dirPath,
                                      CFavorite** list, COrderHead* head, int resolve,
                                      const unsigned char* buffer, ULONG length);

  /// Appends to `*list`, which may be null, whatever the directory holds and the list does not. 1,
  /// also when the directory cannot be read; 0 when memory runs out. `afterOrder` says that the
  /// list comes from an order value; nothing is listed twice either way.
  int ExtractFavoritesFromFileFolders(const WChar* dirPath, CFavorite** list, int resolve,
                                      int afterOrder);

  /// The key of the top folder's order. `out` has room for CFavorite::kNameLimit units.
  void GetFavoritesRegPath(WChar* out);
  /// The user's Favorites folder, empty when it is not known; the same room.
  void GetFavoritesFilePath(WChar* out);

  /// Stores where a shortcut file leads, or null. The text is the shell's: free it with FreeUrl.
  void ResolveInternetShortcut(const WChar* path, WChar** url);
  /// Null is ignored.
  void FreeUrl(WChar* url);

  /// Sets the flag from the system's version: Windows XP and Server 2003.
  /// Intended: every other system, later ones included, reads the layout that is not XP's.
  void CheckOS();
  int AmIRunningOnXP() { return runningOnXP_; }
  /// Reads orders that were kept by another system than this one.
  void SetRunningOnXP(bool runningOnXP) { runningOnXP_ = runningOnXP; }

 private:
  OwnedPointer<ShellAllocator> allocator_;
  bool runningOnXP_ = false;
};

}  // namespace vosmere
