// A pool of search engines.
#include "vosmere/engines/search_engines_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"
#include "tools/loss_on_load.h"

namespace vosmere::tool {
namespace {

Record EngineContent(const CEngineNode& engine) {
  Record record{"engine"};
  record.Add("name", TextOf(engine.GetName()));
  record.Add("queryUrl", AddressOf(engine.GetUrl()), kOnLine);
  record.Add("type", TextOf(engine.GetSearchType()), kOnLine);
  record.Add("description", TextOf(engine.GetDescription()));
  record.Add("icon", TextOf(engine.GetIconUrl()));
  return record;
}

Record PoolContent(CEnginePool* pool) {
  Record record{"pool"};
  record.Add("name", TextOf(pool->GetName()));
  record.Add("description", TextOf(pool->GetDescription()));
  AddChildren<EngineContent>(record, pool->GetREngineItemHead());
  return record;
}

void ForEachIn(CEnginePool* pool, const ItemVisit& visit) {
  ForEachInChain(pool->GetREngineItemHead(), visit);
}

using LoadedPool = LoadedAs<Item<CEnginePool>, PoolContent, CWriteSEngineXML,
                            &CWriteSEngineXML::SetEnginePool, ForEachIn>;

constexpr Word kWords[] = {
    {"*", "searchEnginePool", "version"},  // before the engines, as it begins like them
    {"searchEnginePool", "title", "="},
    {"searchEnginePool", "description", "="},
    {"*", "searchEngine*", "type*<2085", true},
    {"searchEngine*", "title", "="},
    {"searchEngine*", "description", "="},
    {"searchEngine*", "queryUrl", "=<2085"},
    {"searchEngine*", "icon", "=<2084"},
    {"searchEngine*", "stat*", "", false, "the times of an engine are not kept"},
};

void Inspect(const XmlNode& element, std::string_view name, std::string_view scope,
             const Report& report) {
  InspectNesting(name, scope, report);
  if (name == "searchEngine*" && !ChildOf(element, "queryUrl"))
    report("an engine without queryUrl comes back with the address about:blank");
}

constexpr Count kCounts[] = {{"engine", "engines"}};

}  // namespace

const Kind kSearchEngines = {"searchEnginePool",
                             "search engines",
                             kCounts,
                             {.words = kWords, .inspect = Inspect},
                             LoadedPool::Load<CReadSEngineXML, &CReadSEngineXML::DetachEnginePool>};

}  // namespace vosmere::tool
