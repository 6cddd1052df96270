// The document of search engines: its writer, then its reader.
#include "vosmere/engines/search_engines_document.h"

#include <new>
#include <utility>

#include "vosmere/xml/internal/item_fields.h"
#include "vosmere/xml/internal/namespaces.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWriteSEngineXML::~CWriteSEngineXML() = default;

bool CWriteSEngineXML::FillData() {
  if (!pool_) return false;
  BeginDocument();
  LoseAllBut(kDescription, *pool_);
  AddHead();
  for (const REngineItem* cell = pool_->GetREngineItemHead(); cell; cell = cell->next)
    FillEngineNodeToBuffer(cell->item);
  AddTail();
  return true;
}

// Intended: the file begins its root element after a blank, as it always has.
void CWriteSEngineXML::AddHead() {
  Put(" <searchEnginePool version=\"1.0\" xmlns=\"" VOSMERE_NAMESPACE_SEARCH_ENGINE "\">\r\n");
  PutElementUnlessEmpty<"title">(pool_->GetName());
  PutElementUnlessEmpty<"description">(pool_->GetDescription());
}

void CWriteSEngineXML::AddTail() {
  Put("</searchEnginePool>");
}

void CWriteSEngineXML::LoseOf(const CEngineNode& engine) {
  if (!ReportsLosses()) return;
  LoseAllBut(kDescription, engine);
  const WideView url(engine.GetUrl()), type(engine.GetSearchType());
  LoseIf(url.empty(), "an empty queryUrl becomes \"about:blank\"", LossKind::kChanged);
  LoseIf(type.empty(), "an empty type becomes \"web\"", LossKind::kChanged);
  LoseIf(type.size >= 202, "type is cut to 200 characters", LossKind::kCut);
  LoseIf(!WideView(engine.GetIconText()).empty(), "iconText is lost");
  LoseIf(!WideView(engine.GetStoredSite()).empty(), "storedSite is lost");
}

void CWriteSEngineXML::FillEngineNodeToBuffer(CEngineNode* engine) {
  LoseOf(*engine);
  const WideView type(engine->GetSearchType());
  Put("<searchEngine");
  if (!type.empty()) {
    Put(" type=\"");
    PutEscaped(type.size < 202 ? type : type.First(200), Stands::kInAttribute);
    Put("\"");
  }
  Put(">\r\n");
  PutElementUnlessEmpty<"title">(engine->GetName());
  PutElementUnlessEmpty<"description">(engine->GetDescription());
  PutElementUnlessEmpty<"queryUrl">(engine->GetUrl());
  PutElementUnlessEmpty<"icon">(engine->GetIconUrl());
  Put("</searchEngine>\r\n");
}

void CWriteSEngineXML::FillNodeStat(CNodeStat* stat) {
  PutStatDates(*stat);
}

// Reading.

namespace {

using namespace xml;

struct Engines {
  OwnedPointer<CEnginePool, FreeWith<CBaseNode::Delete>> pool;
  CEngineNode* engine = nullptr;  // the engine whose element is being read, or null

  CEnginePool* Pool() const { return pool.get(); }

  void MakePool() {
    if (!pool) pool.Assign(CEnginePool::New());
    if (!pool) throw std::bad_alloc();
  }
  void Begin() {
    MakePool();
    engine = CEngineNode::New();
    // AppendEngine also refuses null, so this covers both ways in which memory can run out.
    if (pool->AppendEngine(engine)) return;
    CBaseNode::Delete(engine);
    throw std::bad_alloc();
  }
  void End() { engine = nullptr; }
};
enum Scope : unsigned { kDocument = 1, kPool = 2, kEngine = 4 };

constexpr Field<CEngineNode> kEngineFields[] = {
    {BeginningWith("type"), Text<&CEngineNode::SetSearchType>},
};

void MakePool(Engines& engines, const Element&) {
  engines.MakePool();
}

void BeginEngine(Engines& engines, const Element& element) {
  BeginItem(engines, element);
  AttributesTo<&Engines::engine, kEngineFields>(engines, element);
}

void SayUnsaid(Engines&, Report& report) {
  if (!report.Says("queryUrl"))
    report.Lose(LossKind::kUnsaid, "an engine without queryUrl gets the address about:blank");
}

constexpr ScopedElement<Engines> kElements[] = {
    {kEngine, "title", TextTo<&Engines::engine, &CBaseNode::SetName>},
    {kEngine, "description", TextTo<&Engines::engine, &CBaseNode::SetDescription>},
    {kEngine, "queryUrl", TextTo<&Engines::engine, &CEngineNode::SetUrl>},
    {kEngine, "icon", TextTo<&Engines::engine, &CEngineNode::SetIconUrl>},
    {kEngine, BeginningWith("stat"), AttributesTo<&Engines::engine, kStatDateFields>},
    {kPool, "title", TextTo<&Engines::Pool, &CBaseNode::SetName>},
    {kPool, "description", TextTo<&Engines::Pool, &CBaseNode::SetDescription>},
    {kAnywhere, "searchEnginePool", MakePool, kPool},  // before the next row, which matches it too
    {kAnywhere, BeginningWith("searchEngine"), BeginEngine, kEngine, EndItem, SayUnsaid},
};

}  // namespace

CReadSEngineXML::~CReadSEngineXML() = default;

void CReadSEngineXML::InvokeParser(XmlNode root) {
  Engines engines;
  ReadElement(kElements, engines, Reported(root), kDocument);
  // Checked before the result of an earlier load is replaced.
  ThrowIfTextsWereLost();
  pool_ = std::move(engines.pool);
}

}  // namespace vosmere
