// The cells of a pool of search engines.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// One cell of a chain of search engines (base/chain.h). Destroying it does not free the engine.
struct VOSMERE_API REngineItem {
  REngineItem* prev = this;
  REngineItem* next = nullptr;
  CEngineNode* item;

  /// A cell in no chain; null when memory runs out. The caller owns it.
  static REngineItem* New(CEngineNode* engine);
  /// Frees the cell, without unlinking it and without freeing the engine. Null is ignored.
  static void Delete(REngineItem* cell);

  REngineItem(const REngineItem&) = delete;
  REngineItem& operator=(const REngineItem&) = delete;
  virtual ~REngineItem();

 protected:
  explicit REngineItem(CEngineNode* engine) : item(engine) {}
};

}  // namespace vosmere
