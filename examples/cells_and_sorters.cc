// Chains of cells, and what sorts them: items of a tree, lists of items, records in chains.
//
// Prints: a b list: b a; lang=en; 1 of 2 collections; (empty)
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const Tree tree = NewTree("List");
  Add<CFolderNode>(tree, "b");
  Add<CFolderNode>(tree, "a");
  tree->firstChild = CSortRNode().Sort(tree->firstChild, true);
  for (RNode* link : chain::Cells(tree->firstChild)) std::cout << NameOf(link) << ' ';

  TList<CBaseNode*>* list = nullptr;  // its cells own nothing
  for (CBaseNode& item : Items(tree)) chain::Append(list, TList<CBaseNode*>::New(&item));
  list = CSortRList().Sort(list, false);
  std::cout << "list:";
  for (const CBaseNode& item : ListRange(list)) std::cout << ' ' << NameOf(item);
  list::Delete(list, [](CBaseNode*) {});

  NameValueList pairs(CNameValuePair::New());
  pairs->SetName(Wide("lang"));
  pairs->SetValue(Wide("en"));
  std::cout << "; lang=" << ToUtf8(CNameValuePair::FindValue(pairs.get(), Wide("lang")));

  ColctList collections;
  for (int i = 0; i < 2; ++i) SetAddress(Append(collections), "http://a.example/feed");
  CRColctTool().DeleteDuplcateColct(collections.get());
  int count = 0;
  for (const RColctItem* cell : chain::Cells(collections.get())) count += cell->item != nullptr;
  std::cout << "; " << count;
  const CProperties properties;
  std::cout << " of 2 collections; " << (properties.IsEmpty() ? "(empty)" : "") << '\n';
}
