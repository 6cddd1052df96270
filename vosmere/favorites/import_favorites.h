// ImportFavorites, which reads the whole Favorites folder as a tree.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// The numbers of things that were imported and left out.
struct FavoritesReport {
  LONG items = 0;                    ///< web pages in the tree
  LONG folders = 0;                  ///< folders in the tree, its root not counted
  LONG foldersInOrder = 0;           ///< folders, the root among them, that have a stored order
  LONG foldersNotRead = 0;           ///< empty in the tree: unreadable, or links
  LONG recordsNotUnderstood = 0;     ///< damaged records of stored orders
  LONG recordsWithoutFile = 0;       ///< records of files that no longer exist
  LONG shortcutsWithoutAddress = 0;  ///< imported as "about:blank": no address, or too long
  LONG otherFiles = 0;               ///< not in the tree: not Internet shortcuts
};

/// Imports a whole Favorites folder as a tree of CFolderNode and CUrlNode items in the order of the
/// Favorites menu. Items are named after their files without ".url"; parts of a file's name that
/// are not well-formed text become U+FFFD. The root is the folder `dirPath`; null means the user's
/// own Favorites folder. `regPath` is the registry key with the order of that folder under the
/// current user (registry.h), and the keys of its subfolders lie below it; null means the usual
/// key. `report` is overwritten and may be null.
///
/// The directory determines what is imported, each file once; the stored order only determines the
/// position. Long names in it are read as Windows XP and later systems store them, whatever system
/// this is. Entries without a position come last: folders, then shortcuts, each sorted by name.
/// This also applies to entries whose record is damaged; the others keep their order.
///
/// The caller frees the tree with DeleteTree. Null when `dirPath` is not known or cannot be read,
/// and when memory runs out.
VOSMERE_API RNode* ImportFavorites(const WChar* regPath, const WChar* dirPath,
                                   FavoritesReport* report);

}  // namespace vosmere
