// Lists one level of a Favorites folder, and the whole of it as a tree.
//
// Prints: 1 item, 1 page, 0 with an order: http://a.example/
#include <filesystem>
#include <fstream>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vosmere-favorites";
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "Weather.url") << "[InternetShortcut]\r\nURL=http://a.example/\r\n";
  const FilePath path(folder);

  CFavorites favorites;
  FavoriteList list;
  COrderHead head;  // what the registry has for a menu with an order
  if (!favorites.ExtractFavorites(Wide("Software\\None"), path.get(), Out(list), &head, 1))
    favorites.ExtractFavoritesFromFileFolders(path.get(), Out(list), 1, 0);
  int items = 0, ordered = 0;
  for (const CFavorite* item = list.get(); item; item = item->next) {
    const COrderRecord* const record = item->GetOrderRecord();  // null without an order
    ++items;
    ordered += record != nullptr;
  }

  FavoritesReport report;
  const Tree tree(ImportFavorites(Wide("Software\\None"), path.get(), &report));
  std::cout << items << " item, " << report.items << " page, " << ordered << " with an order: ";
  for (const CUrlNode& page : Pages(tree)) std::cout << AddressOf(page) << '\n';
  std::filesystem::remove_all(folder);
}
