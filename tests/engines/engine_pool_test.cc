#include "vosmere/engines/engine_pool.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failing_memory.h"
#include "tests/support/row.h"
#include "tests/support/tree.h"
#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

CEngineNode* NewEngine(const std::string& url) {
  CEngineNode* const engine = CEngineNode::New();
  engine->SetUrl(W(url));
  return engine;
}

std::string Urls(const ItemPtr<CEnginePool>& pool) {
  return Row(pool->GetREngineItemHead(),
             [](const REngineItem* cell) { return Utf8(cell->item->GetUrl()); });
}

/// All five texts, in the order of the record.
std::string Texts(const ItemPtr<CEngineNode>& engine) {
  std::string texts;
  for (const WChar* text : {engine->GetUrl(), engine->GetIconUrl(), engine->GetIconText(),
                            engine->GetSearchType(), engine->GetStoredSite()})
    texts += WideLength(text) > 100 ? std::to_string(WideLength(text)) + ' ' : Utf8(text) + ' ';
  return texts;
}

void SetAll(const ItemPtr<CEngineNode>& engine, const Wide& text) {
  engine->SetUrl(text);
  engine->SetIconUrl(text);
  engine->SetIconText(text);
  engine->SetSearchType(text);
  engine->SetStoredSite(text);
}

TEST(EngineNode, LimitsDifferByOneAndSoDoesWhatBecomesOfALongerText) {
  const auto engine = New<CEngineNode>();
  EXPECT_EQ(Texts(engine), "about:blank (null) (null) web (null) ");
  SetAll(engine, Repeated(2083));
  EXPECT_EQ(Texts(engine), "2083 2083 2083 2083 2083 ");
  SetAll(engine, Repeated(2084));
  EXPECT_EQ(Texts(engine), "2084 (null) (null) 2084 (null) ");
  SetAll(engine, W("x"));
  SetAll(engine, Repeated(2085));
  EXPECT_EQ(Texts(engine), "x (null) (null) x (null) ");
  SetAll(engine, W(""));
  SetAll(engine, nullptr);
  EXPECT_EQ(Texts(engine), " (null) (null)  (null) ");
}

TEST(EngineNode, CopyHasItsOwnTexts) {
  auto source = New<CEngineNode>();
  SetAll(source, W("x"));
  source->SetName(W("n"));
  source->SetIconText(nullptr);
  const auto copy = Copy(source);
  source.reset();
  EXPECT_EQ(Utf8(copy->GetName()) + " " + Texts(copy), "n x x (null) x x ");
}

class EnginePool : public testing::Test {
 protected:
  void SetUp() override {
    for (CEngineNode* engine : {a, b, c}) EXPECT_TRUE(pool->AppendEngine(engine));
  }

  const ItemPtr<CEnginePool> pool = New<CEnginePool>();
  CEngineNode* const a = NewEngine("a");
  CEngineNode* const b = NewEngine("b");
  CEngineNode* const c = NewEngine("c");
};

TEST_F(EnginePool, RemovesThisVeryEngineAndKeepsItAlive) {
  const ItemPtr<CEngineNode> twin(NewEngine("a")), removed(a);
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

TEST_F(EnginePool, IsEmptiedWithOrWithoutItsEngines) {
  EXPECT_EQ(pool->GetNumEngines(), 3);
  pool->RemoveAllEngines();
  EXPECT_EQ(pool->GetNumEngines(), 0);
  for (CEngineNode* engine : {c, b, a}) EXPECT_TRUE(pool->AppendEngine(engine));
  EXPECT_EQ(Urls(pool), "c b a");
  pool->DeleteAllEngineObjects();
  EXPECT_EQ(Urls(pool), "");
}

TEST_F(EnginePool, ACopySharesTheChain) {
  pool->SetName(W("name"));
  const ItemPtr<CEnginePool> copy = Copy(pool);
  EXPECT_EQ(copy->GetREngineItemHead(), pool->GetREngineItemHead());
  pool->REngineItemHeadChange(nullptr);
  EXPECT_EQ(Utf8(copy->GetName()) + " " + Urls(copy) + Urls(pool), "name a b c");
}

TEST_F(EnginePool, AnEngineThatItDoesNotTakeStaysTheCallers) {
  const ItemPtr<CEngineNode> more(NewEngine("d"));
  const FailingMemory memory(0);
  EXPECT_FALSE(pool->AppendEngine(nullptr) || pool->AppendEngine(more.get()));
  EXPECT_EQ(pool->GetNumEngines(), 3);
}

}  // namespace
}  // namespace vosmere::test
