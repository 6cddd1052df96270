// Stores groups of tags and a pool of search engines, sorted, with the classes below the layer.
//
// Prints: News: daily weekly; engines: Web, saved and read: 1 and 1
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const ParserThread parser;  // readers below the layer need it
  CTagStore store;            // owns its groups, and they their tags
  CTagGroup* const news = CTagStore::CreateTagGroup();
  news->SetName(Wide("News"));
  store.AddTagGroup(news);
  for (const char* name : {"weekly", "daily"}) {
    CTagItem* const tag = CTagStore::CreateTagItem();
    tag->SetName(Wide(name));
    news->AddTagItem(tag);
  }
  news->SortTagItem(true);  // with a CSortRTagItem
  std::cout << ToUtf8(news->GetName()) << ':';
  for (const CTagItem& tag : Each(news->GetTagItemHead()))
    std::cout << ' ' << ToUtf8(tag.GetName());

  const EnginePool pool = NewEnginePool();  // owns a CEnginePool
  AddEngine(*pool, "Web", "http://search.example/?q=%s");
  for (REngineItem* cell : chain::Cells(pool->GetREngineItemHead())) {
    const CEngineNode& engine = *cell->item;
    std::cout << "; engines: " << NameOf(engine);
  }

  CWriteTagsXML tags;
  tags.SetTagGroupHead(store.GetTagGroupHead());
  CReadTagsXML tagsAgain;
  CWriteSEngineXML engines;
  engines.SetEnginePool(pool.get());
  CReadSEngineXML enginesAgain;
  if (!tagsAgain.LoadBSTRXML(SystemString(tags.GetXMLBSTR()).get()) ||
      !enginesAgain.LoadBSTRXML(SystemString(engines.GetXMLBSTR()).get()))
    return 1;
  const TagGroupList groups(tagsAgain.DetachTagGroupHead());
  const EnginePool poolAgain(enginesAgain.DetachEnginePool());
  int count = 0;
  for (const CTagGroup& group : Each(groups)) count += group.GetTagItemHead() != nullptr;
  std::cout << ", saved and read: " << count << " and " << poolAgain->GetNumEngines() << '\n';
}
