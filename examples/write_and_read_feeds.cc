// Writes a collection as RSS and a tree as OPML with the classes below the layer, and reads both.
//
// Prints: rss: Sunny (weather, today); opml version 1: Weather; 2 pages as links
#include <cstring>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int CountLinks(const char* bytes) {
  int count = 0;
  while ((bytes = std::strstr(bytes, "<A HREF"))) ++count, ++bytes;
  return count;
}

int main() {
  const ParserThread parser;  // readers below the layer need it
  const Collection feed(CColctNode::New());
  if (!feed) return 1;
  feed->SetLocRNodeRoot(NewTree("Weather").release());
  SetTags(*Add<CUrlNode>(Place(feed), "Sunny", "http://a.example/1"), "weather today");
  CWriteColctRSS writer;  // one of the CWriteItems, as all whose documents have items are
  writer.SetColctNode(feed.get());
  CReadBkmarkXML reader;
  if (!reader.LoadBSTRXML(SystemString(writer.GetXMLBSTR()).get())) return 1;
  const Collection read(reader.DetachColctNode());
  for (const CUrlNode& page : Pages(read)) {
    std::cout << "rss: " << NameOf(page) << " (";
    const CUrlProp* const properties = page.GetUrlProp();  // null for a page that has none
    const char* comma = "";
    for (const TextView tag : Each(properties->GetTagsHead()))
      std::cout << std::exchange(comma, ", ") << tag;
    std::cout << "); ";
  }

  const Tree tree = NewTree("Reading list");
  Add<CColctNode>(tree, "Weather", "feeds\\weather.xml");
  CWriteColctTreeOPML opml;
  opml.SetTreeRoot(tree.get());
  CReadColctTreeOPML outlines;  // walks with a CParseOPML
  if (!outlines.LoadBSTRXML(SystemString(opml.GetXMLBSTR()).get())) return 1;
  const Tree again(outlines.DetachTreeRoot());
  for (const CColctNode& item : vosmere::Collections(again))
    std::cout << "opml version " << outlines.GetOpmlVersion() << ": " << NameOf(item);

  Add<CUrlNode>(tree, "One", "http://a.example/1");
  Add<CUrlNode>(tree, "Two", "http://a.example/2");
  CWriteBookmarks bookmarks(tree.get());  // a CWriteLinks
  ConvertedText bytes;
  int length = 0;
  if (!bookmarks.GetXMLBytes(Out(bytes), &length)) return 1;
  std::cout << "; " << CountLinks(bytes.get()) << " pages as links\n";
}
