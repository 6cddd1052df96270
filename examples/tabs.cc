// Records what a tab has loaded, finds the pages of an address, and keeps names in a table.
//
// Prints: 2 addresses, zone 3; 2 pages have http://a.example/; Open is 7; Open -> Ctrl+O
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  CTabUrlData tab;
  int browser, frame;  // any objects of the program; only their addresses are compared
  tab.AddUrl(Wide("http://a.example/"), true, &browser);
  tab.AddUrl(Wide("http://localhost/"), false, &frame);
  bool isLessTrusted = false;
  int count = 0;
  const LONG zone = tab.GetZone(&isLessTrusted, &count);
  TabUrlList addresses;
  tab.GetUrlItemList(Out(addresses));
  for (const CTabUrlItem& item : Each(addresses))
    if (item.GetZone() > zone) std::cout << "less trusted: " << ToUtf8(item.GetUrl()) << '\n';
  std::cout << count << " addresses, zone " << zone;

  const Tree tree = NewTree("Bookmarks");
  const Wide address("http://a.example/");
  CUrlNode* const one = Add<CUrlNode>(tree, "One", address.get());
  const UrlMapEntry entry(CUrlMapItem::New(address, one));
  entry->AddUrlNode(Add<CUrlNode>(tree, "Two", address.get()));
  std::cout << "; " << entry->GetNumberUrlNodes() << " pages have " << ToUtf8(entry->GetUrl());

  CTranslationItem command;
  command.SetItem(Wide("Open"), Wide("file.open"));
  command.SetCmdID(7);
  std::cout << "; " << ToUtf8(command.GetName()) << " is " << command.GetCmdID();

  CHashtable keys;  // its entries are CHashData
  keys.Put(Wide("Open"), Wide("Ctrl+O"), true);
  SystemString key, value;
  for (keys.ResetPosition(); keys.GetNextKeyValue(Out(key), Out(value));)
    std::cout << "; " << ToUtf8(key.get()) << " -> " << ToUtf8(value.get());
  std::cout << '\n';
}
