// CFavorites, which reads the Favorites folder in the order of the menu.
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
/// The shell keeps that order in the registry, in a value named "Order" under one key for each
/// folder. The items that the value names come first, sorted by position. Then come all other
/// entries of the directory except "Desktop.ini", in the order of the file system. ImportFavorites
/// (import_favorites.h) reads the whole folder as a tree.
///
/// The caller owns the returned lists and frees them with CFavorite::DeleteList. A result of 0
/// leaves a list that is empty or incomplete and also has to be freed. `head` may be null. If
/// `resolve` is not 0, the address in each shortcut file is read. On Windows any thread can do
/// that, and it is fastest on a thread in a single-threaded apartment. Both slash and backslash are
/// accepted as separators in paths. Paths of CFavorite::kNameLimit code units or more are left out.
/// Not thread-safe.
///
/// Intended: a file that was renamed after the order was stored is listed twice, once from the
/// value and once from the directory, unless the two paths are equal ignoring ASCII case.
class VOSMERE_API CFavorites {
 public:
  /// Gets the shell's allocator and calls CheckOS. Throws std::bad_alloc.
  CFavorites();
  CFavorites(const CFavorites&) = delete;
  CFavorites& operator=(const CFavorites&) = delete;
  virtual ~CFavorites();

  /// Lists the directory `dirPath` in the order stored under the registry key `regPath` of the
  /// current user. Returns 0 with an empty list when the key cannot be opened, otherwise the result
  /// of GetOrderBufferFromKey.
  int ExtractFavorites(const WChar* regPath, const WChar* dirPath, CFavorite** list,
                       COrderHead* head, int resolve);

  /// The same with an open key. If there is no value "Order", or it is empty, the list is made from
  /// the directory alone and the result is 1. Returns 0 when the value exists but cannot be read,
  /// or memory runs out. `regPath` is ignored.
  int GetOrderBufferFromKey(HKEY key, const WChar* regPath, const WChar* dirPath, CFavorite** list,
                            COrderHead* head, int resolve);

  /// The same with the bytes of the value, which are not trusted: records that cannot be read are
  /// left out. Returns 1, or 0 when memory runs out. A value shorter than its header is treated as
  /// missing. `key` and `regPath` are ignored.
  /// Intended: a value with a count of 0 records gives an empty list and the result 1, whatever the
  /// directory holds.
  /// Intended: a record with an empty name gives an item, whose path is the directory and a
  /// separator. Otherwise its place would be lost when the order is written back.
  int ExtractFavoritesFromOrderBuffer(HKEY key, const WChar* regPath, const WChar* dirPath,
                                      CFavorite** list, COrderHead* head, int resolve,
                                      const unsigned char* buffer, ULONG length);

  /// Appends the entries of the directory that are not in `*list` yet; `*list` may be null. Returns
  /// 1, even when the directory cannot be read, and 0 when memory runs out. `afterOrder` is for
  /// callers to say that the list comes from an order value; it has no effect, since no path is
  /// ever listed twice.
  int ExtractFavoritesFromFileFolders(const WChar* dirPath, CFavorite** list, int resolve,
                                      int afterOrder);

  /// Copies the registry key with the order of the top folder to `out`, which has to hold
  /// CFavorite::kNameLimit code units.
  void GetFavoritesRegPath(WChar* out);
  /// Copies the path of the user's Favorites folder to `out`, which has to hold
  /// CFavorite::kNameLimit code units. The path is empty when the folder is not known.
  void GetFavoritesFilePath(WChar* out);

  /// Stores the target address of an Internet shortcut file in `*url`, or null when there is none
  /// or the file cannot be read, and when memory runs out, which LostTexts (owned_text.h) counts.
  /// The text is allocated by the shell: free it with FreeUrl.
  void ResolveInternetShortcut(const WChar* path, WChar** url);
  /// Frees a text from ResolveInternetShortcut. Null is ignored.
  void FreeUrl(WChar* url);

  /// Sets the flag of AmIRunningOnXP from the system's version: true on Windows XP and Server 2003.
  /// Intended: all other systems, even later ones, read the other layout of order records.
  void CheckOS();
  /// Whether order records are read in the layout of Windows XP.
  int AmIRunningOnXP() { return runningOnXP_; }
  /// Sets the flag, to read an order that was stored by another system than this one.
  void SetRunningOnXP(bool runningOnXP) { runningOnXP_ = runningOnXP; }

 private:
  OwnedPointer<ShellAllocator> allocator_;
  bool runningOnXP_ = false;
};

}  // namespace vosmere
