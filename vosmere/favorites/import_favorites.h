#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// What came of an import.
struct FavoritesReport {
  LONG items = 0;                    ///< web pages in the tree
  LONG folders = 0;                  ///< folders in the tree, its root not counted
  LONG foldersInOrder = 0;           ///< folders, the root among them, that have a stored order
  LONG foldersNotRead = 0;           ///< empty in the tree: unreadable, or links to elsewhere
  LONG recordsNotUnderstood = 0;     ///< damage to the stored orders
  LONG recordsWithoutFile = 0;       ///< left behind in the stored orders by what is gone
  LONG shortcutsWithoutAddress = 0;  ///< in the tree at "about:blank": none, or one too long
  LONG otherFiles = 0;               ///< not in the tree: no Internet shortcuts
};

/// Imports a whole Favorites folder: a tree of CFolderNode and CUrlNode items in the order of the
/// Favorites menu, named without ".url"; what is no text in a file's name is U+FFFD. The root
/// stands for the folder `dirPath`; null is the user's own. `regPath` is the key of its order under
/// the current user (registry.h), its folders' keys lie below; null is the usual one. `report` may
/// be null.
///
/// The directory says what there is, each file once, and the order says where it stands. Long names
/// are read as systems from Windows XP on keep them, whatever system this is. What has no place
/// comes last: folders, then shortcuts, by name. So does what a damaged record stood for; the
/// others keep their order.
///
/// The caller frees the tree with DeleteTree. Null when `dirPath` is not known or cannot be read,
/// and without memory.
VOSMERE_API RNode* ImportFavorites(const WChar* regPath, const WChar* dirPath,
                                   FavoritesReport* report);

}  // namespace vosmere
