// The Favorites of a Windows user, shown in the order of their menu or written for other programs.
#pragma once

#include <string>

namespace vosmere::tool {

struct FavoritesOptions {
  std::string folder;    ///< empty for the user's own
  std::string registry;  ///< what holds the user's registry; empty for the default
  std::string opml;      ///< written instead of showing, if not empty
  std::string rss;       ///< the same
  std::string html;      ///< the same
};

/// Returns the exit code. Throws Failure.
int Favorites(const FavoritesOptions& options);

}  // namespace vosmere::tool
