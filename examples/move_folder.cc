// Moves a folder into another one, anywhere in the tree. Moving a folder into itself fails.
//
// Prints: Archive holds News, into itself: refused
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

bool MoveFolder(const Tree& tree, std::string_view name, std::string_view to) {
  return Move(Find<CFolderNode>(tree, name), Find<CFolderNode>(tree, to));
}

int main() {
  const Tree tree = NewTree("Bookmarks");
  Add<CUrlNode>(Add<CFolderNode>(tree, "News"), "Weather", "http://weather.example/");
  CFolderNode* const archive = Add<CFolderNode>(Add<CFolderNode>(tree, "Old"), "Archive");

  if (MoveFolder(tree, "News", "Archive"))
    for (const CFolderNode& folder : Folders(archive))
      std::cout << "Archive holds " << NameOf(folder);
  std::cout << ", into itself: " << (MoveFolder(tree, "Old", "Archive") ? "moved" : "refused")
            << '\n';
}
