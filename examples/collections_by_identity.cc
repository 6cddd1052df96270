// Refers to items of collections by their identities, and keeps where the data of each collection
// is.
//
// Prints: Sunny in Weather, polled every 30; data in feeds/weather.xml, again: Weather
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

ColctList MakeList() {
  ColctList list;
  CColctNode& weather = Append(list);
  SetName(weather, "Weather");
  SetAddress(weather, "http://a.example/feed");
  weather.SetLocRNodeRoot(NewTree("Weather").release());  // the list frees it
  CUrlNode* const page = Add<CUrlNode>(Place(weather), "Sunny", "http://a.example/1");
  for (CBaseNode* item : {static_cast<CBaseNode*>(&weather), static_cast<CBaseNode*>(page)})
    item->SetUUID(SystemString(RNTool::CreateUUID()).get());
  CColctNetData* const settings = weather.GetColctNetData();  // never null
  settings->SetPollingInterval(30);
  return list;
}

// What a writer writes, loaded by a reader.
template <class Reader>
void Pass(CWriteXML& writer, Reader& reader) {
  if (!reader.LoadBSTRXML(SystemString(writer.GetXMLBSTR()).get()))
    std::cerr << reader.LastError().reason << '\n';
}

int main() {
  const ParserThread parser;  // readers below the layer need it
  const ColctList list = MakeList();
  CColctNode& weather = *list->item;  // that of the first cell, an RColctItem

  ColctItemNameList names;
  CColctItemID& name = Append(names);
  name.SetColctID(weather.GetUUID());
  name.SetItemID(Find<CUrlNode>(weather, "Sunny")->GetUUID());
  CWriteColctItemID writer;
  writer.SetRColctItemIDHead(names.get());
  CReadColctItemID reader;
  Pass(writer, reader);
  const ColctItemNameList read(reader.DetachRColctItemIDHead());
  for (RColctItemID* cell : chain::Cells(read.get()))
    if (Resolve(*cell->item, list))
      std::cout << NameOf(*cell->item->GetRefUrlNode()) << " in "
                << NameOf(*cell->item->GetRefColctNode()) << ", polled every "
                << weather.GetColctNetData()->GetPollingInterval();

  ColctProfile profile;
  CColctExData& data = Append(profile.entries);
  data.SetColctUrl(Wide("/home/ann/feeds/weather.xml"));
  CWriteColctExData profileWriter;
  profileWriter.SetRColctExDataHead(profile.entries.get());
  // A LibraryPlace: what is in the folder "feeds" is written from there on.
  profileWriter.SetBasePathAndLibrary(Wide("/home/ann/"), Wide("feeds"));
  CReadColctExData profileReader;
  Pass(profileWriter, profileReader);
  for (RColctExData* cell : chain::Cells(profileReader.GetRColctExDataHead()))
    std::cout << "; data in " << ToUtf8(cell->item->GetColctUrl());

  CWriteColctListXML listWriter;
  listWriter.SetRColctItemHead(list.get());
  CReadColctListXML listReader;
  Pass(listWriter, listReader);
  const ColctList copy(listReader.DetachRColctItemHead());
  for (RColctItem* cell : chain::Cells(copy.get()))
    std::cout << ", again: " << NameOf(*cell->item) << '\n';
}
