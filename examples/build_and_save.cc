// Builds a tree, saves it, and prints what the document cannot store.
//
// Prints: a page is left out: News > Weather
#include <filesystem>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const Tree list = NewTree("Reading list");
  CFolderNode* const news = Add<CFolderNode>(list, "News & \"views\"");
  SetName(*news, "News");
  Add<CColctNode>(news, "Daily <all>", "feeds\\daily.xml");
  Add<CUrlNode>(news, "Weather", "http://weather.example/");

  const auto file = std::filesystem::temp_directory_path() / "vosmere-build-and-save.opml";
  const Result<Saved> saved = Save(file, list);
  if (saved)
    for (const Loss& loss : saved->losses) std::cout << loss << '\n';
  else
    std::cerr << saved.error() << '\n';
  std::filesystem::remove(file);
}
