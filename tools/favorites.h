// The verb "favorites": shows the Favorites of a Windows user, or writes them for other programs.
#pragma once

#include <string>

namespace vosmere::tool {

struct FavoritesOptions {
  std::string folder;    ///< the Favorites folder; empty for the user's own
  std::string registry;  ///< the file with the user's registry; empty for the default
  std::string opml;      ///< the file to write instead of showing; empty for none
  std::string rss;       ///< the same
  std::string html;      ///< the same
  bool json = false;     ///< shows the tree and the warnings as JSON
};

/// Returns the exit code. Throws Failure.
int Favorites(const FavoritesOptions& options);

}  // namespace vosmere::tool
