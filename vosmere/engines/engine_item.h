#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// One cell of a chain of search engines (base/chain.h). Destroying it frees nothing else.
struct VOSMERE_API REngineItem {
  REngineItem* prev = this;
  REngineItem* next = nullptr;
  CEngineNode* item;

  /// A cell of its own; null when memory runs out.
  static REngineItem* New(CEngineNode* engine);
  /// Frees one cell. Null is ignored.
  static void Delete(REngineItem* cell);

  REngineItem(const REngineItem&) = delete;
  REngineItem& operator=(const REngineItem&) = delete;
  virtual ~REngineItem();

 protected:
  explicit REngineItem(CEngineNode* engine) : item(engine) {}
};

}  // namespace vosmere
