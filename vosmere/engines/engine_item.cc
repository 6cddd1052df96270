// The cells of a pool of search engines.
#include "vosmere/engines/engine_item.h"

#include <new>

namespace vosmere {

REngineItem::~REngineItem() = default;

REngineItem* REngineItem::New(CEngineNode* engine) {
  return new (std::nothrow) REngineItem(engine);
}

void REngineItem::Delete(REngineItem* cell) {
  delete cell;
}

}  // namespace vosmere
