#include "tests/support/document.h"
#include "tests/support/test.h"
#include "vosmere/cpp/own.h"
#include "vosmere/engines/search_engines_document.h"

namespace vosmere::test::engines {

CEngineNode* NewEngine(const std::string& url) {
  CEngineNode* const engine = CEngineNode::New();
  engine->SetUrl(W(url));
  return engine;
}

std::string Urls(const Item<CEnginePool>& pool) {
  return Row(pool->GetREngineItemHead(),
             [](const REngineItem* cell) { return Utf8(cell->item->GetUrl()); });
}

class EnginePool : public testing::Test {
 protected:
  EnginePool() {
    for (CEngineNode* engine : {a, b, c}) EXPECT_TRUE(pool->AppendEngine(engine));
  }

  const Item<CEnginePool> pool{CEnginePool::New()};
  CEngineNode* const a = NewEngine("a");
  CEngineNode* const b = NewEngine("b");
  CEngineNode* const c = NewEngine("c");
};

TEST_F(EnginePool, RemovesThisVeryEngineAndKeepsItAlive) {
  const Item<CEngineNode> twin(NewEngine("a")), removed(a);
  EXPECT_FALSE(pool->RemoveEngine(twin.get()) || pool->IsThisEngineInMyPool(twin.get()));
  EXPECT_TRUE(pool->IsThisEngineInMyPool(a) && pool->RemoveEngine(a));
  EXPECT_EQ(Urls(pool), "b c");
  EXPECT_FALSE(pool->RemoveEngine(a) || pool->RemoveEngine(nullptr));
  EXPECT_EQ(Utf8(removed->GetUrl()), "a");
}

TEST_F(EnginePool, LooksForExactAddresses) {
  EXPECT_TRUE(pool->IsThisQueryUrlInMyPool(W("c")));
  for (const Wide& other : {W("C"), W("c "), W(""), Wide(nullptr)})
    EXPECT_FALSE(pool->IsThisQueryUrlInMyPool(other)) << Utf8(other);
}

TEST_F(EnginePool, TakesEnginesOrLeavesThemToTheCallerAndIsEmptiedWithOrWithoutThem) {
  const Item<CEngineNode> more(NewEngine("d"));
  {
    const FailingMemory memory(0);
    EXPECT_FALSE(pool->AppendEngine(nullptr) || pool->AppendEngine(more.get()));
  }
  EXPECT_EQ(pool->GetNumEngines(), 3);
  pool->RemoveAllEngines();
  EXPECT_EQ(pool->GetNumEngines(), 0);
  for (CEngineNode* engine : {c, b, a}) EXPECT_TRUE(pool->AppendEngine(engine));
  EXPECT_EQ(Urls(pool), "c b a");
  pool->DeleteAllEngineObjects();
  EXPECT_EQ(Urls(pool), "");
}

TEST_F(EnginePool, ACopySharesTheChain) {
  const Item<CEnginePool> copy(CEnginePool::New(pool.get()));
  EXPECT_EQ(copy->GetREngineItemHead(), pool->GetREngineItemHead());
  pool->REngineItemHeadChange(nullptr);
  EXPECT_EQ(Urls(copy) + Urls(pool), "a b c");
}

TEST(SearchEngines, LeaveOutWhatIsNotTheirs) {
  const Item<CEnginePool> pool(CEnginePool::New());
  CEngineNode* const engine = NewEngine("");
  engine->SetIconText(W("left out"));
  engine->SetStoredSite(W("left out"));
  engine->SetUUID(W("left out"));
  pool->AppendEngine(engine);
  CWriteSEngineXML writer;
  writer.SetEnginePool(pool.get());
  EXPECT_THAT(Saved(writer), HasSubstr("<searchEngine type=\"web\">\r\n</searchEngine>"));
}

}  // namespace vosmere::test::engines
