// Finds a page by its address, with a loop that stops there and with a search.
//
// Prints: Weather
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

CUrlNode* PageAt(const Tree& tree, std::string_view address) {
  for (CUrlNode& page : Pages(tree))
    if (AddressOf(page) == address) return &page;
  return nullptr;
}

int main() {
  const Tree tree = NewTree("Bookmarks");
  CFolderNode* const news = Add<CFolderNode>(tree, "News");
  Add<CUrlNode>(news, "Weather", "http://weather.example/");
  Add<CUrlNode>(news, "Sport", "http://sport.example/");

  const CUrlNode* const page = PageAt(tree, "http://weather.example/");
  if (page && page == Find<CUrlNode>(tree, AtAddress{"http://weather.example/"}))
    std::cout << NameOf(*page) << '\n';
}
