#include "vosmere/engines/search_engines_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/row.h"

namespace vosmere::test {
namespace {

using PoolPtr = ItemPtr<CEnginePool>;
using testing::HasSubstr;

CEngineNode& AddEngine(CEnginePool& pool, const char* name, const Wide& type) {
  CEngineNode* const engine = CEngineNode::New();
  engine->SetName(W(std::string(name)));
  engine->SetSearchType(type);
  pool.AppendEngine(engine);
  return *engine;
}

std::string SavedPool(CEnginePool* pool) {
  CWriteSEngineXML writer;
  writer.SetEnginePool(pool);
  return Saved(writer);
}

PoolPtr ReadPool(const std::string& bytes) {
  CReadSEngineXML reader;
  return PoolPtr(Load(reader, bytes) ? reader.DetachEnginePool() : nullptr);
}

/// The pool's name, then of each engine the search type, name and address.
std::string Show(const PoolPtr& pool) {
  if (!pool) return "no pool";
  return Utf8(pool->GetName()) + ":" + Row(pool->GetREngineItemHead(), [](const REngineItem* cell) {
           const CEngineNode& engine = *cell->item;
           return Utf8(engine.GetSearchType()) + "," + Utf8(engine.GetName()) + "," +
                  Utf8(engine.GetUrl());
         });
}

TEST(SearchEngines, AreWrittenByteForByteAndReadBack) {
  const PoolPtr pool(CEnginePool::New());
  pool->SetName(W("My \"engines\" & more"));
  pool->SetDescription(W("Suchmaschinen für alles"));
  CEngineNode& full = AddEngine(*pool, "Images <new>", W("image"));
  full.SetDescription(W("日本語 😀"));
  full.SetUrl(W("http://images.example/?q=%s&safe='on'"));
  full.SetIconUrl(W("http://images.example/favicon.ico"));
  full.SetIconText(W("left out"));
  full.SetStoredSite(W("left out"));
  full.SetUUID(W("left out"));
  AddEngine(*pool, "", W("")).SetUrl(W(""));
  EXPECT_EQ(SavedPool(pool.get()), TestData("search_engines.xml"));
  const PoolPtr back = ReadPool(TestData("search_engines.xml"));
  ASSERT_TRUE(back);
  EXPECT_EQ(Show(back),
            "My \"engines\" & more:image,Images <new>,http://images.example/?q=%s&safe='on' "
            "web,,about:blank");
  const CEngineNode& engine = *back->GetREngineItemHead()->item;
  EXPECT_EQ(Utf8(back->GetDescription()), "Suchmaschinen für alles");
  EXPECT_EQ(Utf8(engine.GetDescription()), "日本語 😀");
  EXPECT_EQ(Utf8(engine.GetIconUrl()), "http://images.example/favicon.ico");
  EXPECT_EQ(Utf8(engine.GetIconText()), "(null)");
}

TEST(SearchEngines, ASearchTypeOf202UnitsIsCutTo200) {
  for (const std::size_t length : {200, 201, 202, 2000}) {
    const PoolPtr pool(CEnginePool::New());
    AddEngine(*pool, "", Repeated(length));
    const std::string type(length < 202 ? length : 200, 'x');
    EXPECT_THAT(SavedPool(pool.get()), HasSubstr(" type=\"" + type + "\">\r\n"));
  }
}

TEST(SearchEngines, APoolMayBeEmptyAndADocumentMayHaveNone) {
  const PoolPtr pool(CEnginePool::New());
  const std::string saved = SavedPool(pool.get());
  EXPECT_THAT(saved, HasSubstr("/searchengine\">\r\n</searchEnginePool>"));
  EXPECT_EQ(Show(ReadPool(saved)), ":");
  EXPECT_EQ(SavedPool(nullptr), "(not saved)");
}

TEST(SearchEngines, NamesOfEnginesAndTypesAreKnownByTheirBeginning) {
  const struct {
    const char *document, *shown;
  } cases[] = {
      {"<x> </x>", "no pool"},
      {"<x><searchEngine/></x>", ":web,,about:blank"},
      {"<SEARCHENGINE2 TypeOf='a'><title>t</title></SEARCHENGINE2>", ":a,t,about:blank"},
      {"<searchEnginePool><title>p</title><x><title>q</title></x></searchEnginePool>", "p:"},
      {"<p><SearchEnginePool Type=''><Title>t</Title></SearchEnginePool></p>", ":,,about:blank"},
      {"<searchEnginePool><searchEngine><title>a</title><searchEngine><title>b</title>"
       "</searchEngine><title>c</title></searchEngine><title>p</title></searchEnginePool>",
       "p:web,a,about:blank web,b,about:blank"},
      {"<searchEngine><title>a<searchEngine><title>b</title></searchEngine></title></searchEngine>",
       ":web,ab,about:blank web,b,about:blank"},
      {"<searchEngine><title>a</title><x><title>b</title></x><queryUrl/><queryURL>u</queryURL>"
       "</searchEngine>",
       ":web,a,"},
  };
  for (const auto& c : cases) EXPECT_EQ(Show(ReadPool(c.document)), c.shown) << c.document;
}

TEST(SearchEngines, OneTimeLeavesTheOthers) {
  LONG added = 0, modified = 0, visited = 0, now = 0;
  CNodeStat().GetStatTime(&now, nullptr, nullptr);
  const PoolPtr pool = ReadPool("<searchEngine><Stats lastVisit='7' adddate='8'/></searchEngine>");
  ASSERT_TRUE(pool);
  pool->GetREngineItemHead()->item->GetNodeStat()->GetStatTime(&added, &modified, &visited);
  EXPECT_EQ(visited, 7);
  EXPECT_TRUE(added >= now && modified == added);
}

}  // namespace
}  // namespace vosmere::test
