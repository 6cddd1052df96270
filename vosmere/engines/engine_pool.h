// The user's list of search engines.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/engines/engine_item.h"
#include "vosmere/engines/engine_node.h"
#include "vosmere/tree/folder_node.h"

namespace vosmere {

/// The user's search engines in order: a folder that keeps them in a chain of its own
/// (base/chain.h) instead of the tree. Owns the cells and the engines; destroying the pool frees
/// both.
class VOSMERE_API CEnginePool : public CFolderNode {
 public:
  /// A new pool without engines; null when memory runs out. Freed with Delete.
  static CEnginePool* New();
  /// A copy of the pool's fields as a folder; null when memory runs out.
  /// Intended: the engines are not copied; both pools have the same chain. Before either of them is
  /// changed or freed, one must give the chain up (REngineItemHeadChange with null).
  static CEnginePool* New(CEnginePool* source);

  ~CEnginePool() override;

  /// The chain, still owned by the pool; null when there are no engines.
  REngineItem* GetREngineItemHead() const { return head_; }
  /// Replaces the chain. The old one is not freed.
  void REngineItemHeadChange(REngineItem* head) { head_ = head; }

  /// Appends the engine and takes ownership of it. Returns false for null and when memory runs out;
  /// the caller still owns the engine then.
  bool AppendEngine(CEngineNode* engine);
  /// Removes the cell that holds exactly this engine and gives the engine to the caller. Returns
  /// false when it is not in the pool.
  bool RemoveEngine(CEngineNode* engine);

  /// Removes all engines without freeing them; the caller must free them.
  void RemoveAllEngines();
  /// Removes and frees all engines.
  void DeleteAllEngineObjects();

  /// Whether this object is in the pool.
  bool IsThisEngineInMyPool(CEngineNode* engine) const;
  /// Whether an engine has exactly this address. False for null.
  bool IsThisQueryUrlInMyPool(const WChar* url) const;
  /// The number of engines; takes linear time.
  int GetNumEngines() const;

 protected:
  CEnginePool() = default;
  explicit CEnginePool(const CEnginePool* source) : CFolderNode(source), head_(source->head_) {}

 private:
  REngineItem* Find(CEngineNode* engine) const;

  REngineItem* head_ = nullptr;
};

}  // namespace vosmere
