// Imports a Favorites folder, saves it as a collection and loads it again.
//
// Prints: News > Weather, http://weather.example/
#include <filesystem>
#include <fstream>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const auto folder = std::filesystem::temp_directory_path() / "vosmere-import-favorites";
  std::filesystem::create_directories(folder / "News");
  std::ofstream(folder / "News" / "Weather.url")
      << "[InternetShortcut]\nURL=http://weather.example/\n";

  Collection pages = NewCollection("Favorites");
  Add(*pages, LoadFavorites(folder));
  const Result<SavedBytes> saved = SaveToBytes(pages);
  const Result<Collection> back = Load<Collection>(Bytes(saved->bytes));
  if (!back) std::cerr << back.error() << '\n';
  for (const CUrlNode& page : Pages(*back))
    std::cout << NameOf(page.GetRNode()->parent) << " > " << NameOf(page) << ", " << AddressOf(page)
              << '\n';
  if (ShortcutAddress(folder / "News" / "Weather.url").empty()) std::cerr << "no address\n";
  std::filesystem::remove_all(folder);
}
