// Adds a prefix to the title of every page.
//
// Prints: * Weather * Sport
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

void PrefixTitles(const Tree& tree, std::string_view prefix) {
  for (CUrlNode& page : Pages(tree)) SetName(page, prefix + NameOf(page));
}

int main() {
  const Tree tree = NewTree("Bookmarks");
  Add<CUrlNode>(Add<CFolderNode>(tree, "News"), "Weather");
  Add<CUrlNode>(tree, "Sport");

  PrefixTitles(tree, "* ");
  for (const CUrlNode& page : Pages(tree)) std::cout << NameOf(page) << ' ';
}
