// What a document does not keep, why one does not load, and what an import repairs.
//
// Prints: a page is left out: Weather, line 2, repaired: &
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const Tree tree = NewTree("List");
  SetTags(*Add<CUrlNode>(tree, "Weather", "http://a.example/"), "daily");
  const Result<SavedBytes> saved = SaveToBytes(tree);
  const Losses& losses = saved->losses;
  for (const Loss& loss : losses)
    for (const LossPlace& place : loss.places) std::cout << loss.what << ": " << place.path;

  CReadColctTreeOPML reader;  // below the layer an error is a plain record
  const ParserThread parser;
  reader.LoadXML("<opml>\n<body>", 13);
  const DocumentError& error = reader.LastError();
  if (error.fault == DocumentFault::kMalformed) std::cout << ", line " << error.line;

  ImportedItems items;
  DocumentError refused;
  const auto print = [](void*, const DocumentRepair& repair) {
    if (repair.kind == RepairKind::kAmpersand) std::cout << ", repaired: " << repair.found << '\n';
  };
  constexpr std::string_view kList = "<opml><body><outline text='A & B'/></body></opml>";
  ImportDocument(kList.data(), kList.size(), &items, print, nullptr, &refused);
  const Tree imported(items.tree);
}
