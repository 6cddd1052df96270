#pragma once

#include "vosmere/base/export.h"
#include "vosmere/engines/engine_item.h"
#include "vosmere/engines/engine_node.h"
#include "vosmere/tree/folder_node.h"

namespace vosmere {

/// The user's search engines in their order: a folder that keeps them in a chain of cells of its
/// own (base/chain.h), not in a tree. It owns cells and engines: destroying the pool frees both.
class VOSMERE_API CEnginePool : public CFolderNode {
 public:
  /// A new empty pool, or null when memory runs out.
  static CEnginePool* New();
  /// A copy of what the pool has as a folder, or null when memory runs out.
  /// Intended: the engines are not copied, the copy has the very chain of the source. One of the
  /// two gives it up (REngineItemHeadChange with null) before the other changes or frees it.
  static CEnginePool* New(CEnginePool* source);

  ~CEnginePool() override;

  /// Null when there is none.
  REngineItem* GetREngineItemHead() const { return head_; }
  /// Puts another chain in place of the present one, which is not freed.
  void REngineItemHeadChange(REngineItem* head) { head_ = head; }

  /// Makes the engine the last one and the pool's own. False, and the engine stays the caller's,
  /// for null and when memory runs out.
  bool AppendEngine(CEngineNode* engine);
  /// Takes out this very engine, which is the caller's from then on. False when it is not here.
  bool RemoveEngine(CEngineNode* engine);

  /// Empties the pool; the engines live on, and whoever knows them frees them.
  void RemoveAllEngines();
  /// Empties the pool and frees the engines.
  void DeleteAllEngineObjects();

  /// Whether this very engine is here.
  bool IsThisEngineInMyPool(CEngineNode* engine) const;
  /// Whether an engine has exactly this address; false for null.
  bool IsThisQueryUrlInMyPool(const WChar* url) const;
  /// Counts them.
  int GetNumEngines() const;

 protected:
  CEnginePool() = default;
  explicit CEnginePool(const CEnginePool* source) : CFolderNode(source), head_(source->head_) {}

 private:
  REngineItem* Find(CEngineNode* engine) const;

  REngineItem* head_ = nullptr;
};

}  // namespace vosmere
