// Chains of collections.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// One cell of a chain of collections (base/chain.h). The chain is independent of any tree.
/// Destroying a cell does not free its collection.
struct VOSMERE_API RColctItem {
  RColctItem* prev = this;
  RColctItem* next = nullptr;
  CColctNode* item;
  bool mark;

  /// A cell in no chain, by default not marked; null when memory runs out.
  static RColctItem* New(CColctNode* colct) { return New(colct, false); }
  static RColctItem* New(CColctNode* colct, bool mark);
  /// Frees one cell, but not its collection. Null is ignored.
  static void Delete(RColctItem* cell);
  /// Frees every cell from `head` on, with its collection. Null is ignored.
  static void DeleteList(RColctItem* head);
  /// Frees every cell from `head` on, but not the collections. Null is ignored.
  static void DeleteListShell(RColctItem* head);

  RColctItem(const RColctItem&) = delete;
  RColctItem& operator=(const RColctItem&) = delete;
  virtual ~RColctItem();

  /// The level in a tree, for display. The library does not use it.
  void SetTreeLevel(int level) { treeLevel_ = level; }
  int GetTreeLevel() const { return treeLevel_; }

 protected:
  RColctItem(CColctNode* colct, bool marked) : item(colct), mark(marked) {}

 private:
  LONG treeLevel_ = 0;
};

}  // namespace vosmere
