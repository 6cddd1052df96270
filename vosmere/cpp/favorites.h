// The Favorites folder of a Windows user, and single shortcut files. The only exception thrown is
// std::bad_alloc.
#pragma once

#include <memory>
#include <string>

#include "vosmere/cpp/files.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/text.h"
#include "vosmere/favorites/favorites.h"
#include "vosmere/favorites/import_favorites.h"

namespace vosmere {

/// A Favorites folder as a tree of folders and pages, in the order of its menu; empty when it
/// cannot be read. A null path means the user's own folder. `report` is overwritten and may be
/// null.
inline Tree LoadFavorites(const FilePath& folder, FavoritesReport* report = nullptr) {
  return Tree(ImportFavorites(nullptr, folder.get(), report));
}

/// The address in a shortcut file; empty if the file is not a shortcut.
inline std::string ShortcutAddress(const FilePath& path) {
  CFavorites favorites;
  WChar* url = nullptr;
  favorites.ResolveInternetShortcut(path.get(), &url);
  const auto free = [&](WChar* text) { favorites.FreeUrl(text); };
  const std::unique_ptr<WChar, decltype(free)> held(url, free);
  return ToUtf8(url);
}

}  // namespace vosmere
