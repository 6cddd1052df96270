// Sets the tags of pages and finds pages by a tag; adds search engines to a pool.
//
// Prints: news: Weather, 2 engines, Web asks http://search.example/?q=%s
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const Tree tree = NewTree("Bookmarks");
  SetTags(*Add<CUrlNode>(tree, "Weather"), "daily, news");
  AddTag(*Add<CUrlNode>(tree, "Sport"), "on Sundays");
  for (const CUrlNode& page : Pages(tree))
    if (HasTag(page, "News")) std::cout << "news: " << NameOf(page);

  const EnginePool pool = NewEnginePool();
  AddEngine(*pool, "Web", "http://search.example/?q=%s");
  AddEngine(*pool, "Images", "http://images.example/?q=%s", "image");
  std::cout << ", " << pool->GetNumEngines() << " engines, ";
  for (const CEngineNode& engine : Engines(*pool))
    if (NameOf(engine) == "Web") std::cout << "Web asks " << AddressOf(engine) << '\n';
}
