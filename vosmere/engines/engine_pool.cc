// The user's list of search engines.
#include "vosmere/engines/engine_pool.h"

#include "vosmere/base/chain.h"
#include "vosmere/base/internal/no_memory.h"

namespace vosmere {

CEnginePool* CEnginePool::New() {
  return NullIfNoMemory([] { return new CEnginePool; });
}

CEnginePool* CEnginePool::New(CEnginePool* source) {
  return NullIfNoMemory([source] { return new CEnginePool(source); });
}

CEnginePool::~CEnginePool() {
  DeleteAllEngineObjects();
}

bool CEnginePool::AppendEngine(CEngineNode* engine) {
  REngineItem* const cell = engine ? REngineItem::New(engine) : nullptr;
  if (cell) chain::Append(head_, cell);
  return cell != nullptr;
}

bool CEnginePool::RemoveEngine(CEngineNode* engine) {
  REngineItem* const cell = Find(engine);
  if (cell) chain::Unlink(head_, cell);
  REngineItem::Delete(cell);
  return cell != nullptr;
}

void CEnginePool::RemoveAllEngines() {
  for (REngineItem* cell : chain::Cells(head_)) REngineItem::Delete(cell);
  head_ = nullptr;
}

void CEnginePool::DeleteAllEngineObjects() {
  for (REngineItem* cell : chain::Cells(head_)) {
    CEngineNode::Delete(cell->item);
    REngineItem::Delete(cell);
  }
  head_ = nullptr;
}

bool CEnginePool::IsThisEngineInMyPool(CEngineNode* engine) const {
  return Find(engine) != nullptr;
}

bool CEnginePool::IsThisQueryUrlInMyPool(const WChar* url) const {
  return url && chain::Find(head_, [url](REngineItem* cell) {
           return SameText(cell->item->GetUrl(), url);
         });
}

int CEnginePool::GetNumEngines() const {
  int count = 0;
  for (const REngineItem* cell = head_; cell; cell = cell->next) ++count;
  return count;
}

REngineItem* CEnginePool::Find(CEngineNode* engine) const {
  return chain::Find(head_, [engine](REngineItem* cell) { return cell->item == engine; });
}

}  // namespace vosmere
