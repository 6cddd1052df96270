// A walk over a tree together with the local trees of its collections.
#pragma once

#include <vector>

#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// The root of the local tree; null for anything but a collection that has one.
inline RNode* LocalRootOf(const RNode* link) {
  const bool isColct = link->type == NT_COLCT && link->item;
  return isColct ? static_cast<const CColctNode*>(link->item)->GetLocRNodeRoot() : nullptr;
}

/// Calls `visit(link, parent, isLocal)` with a link and all below it, each before what is below it,
/// until it is false. The parent of the root of a local tree is the link of its collection.
template <class Visit>
bool WalkWhole(RNode* top, bool withLocalTrees, Visit visit) {
  struct Step {
    RNode* link;
    RNode* parent;
    bool isLocal;
  };
  if (!top) return true;
  std::vector<Step> steps = {{top, top->parent, false}};
  while (!steps.empty()) {
    const Step step = steps.back();
    steps.pop_back();
    if (step.link->next && step.link != top && !step.isLocal)
      steps.push_back({step.link->next, step.parent, false});
    if (step.link->firstChild) steps.push_back({step.link->firstChild, step.link, false});
    if (RNode* const local = withLocalTrees ? LocalRootOf(step.link) : nullptr)
      steps.push_back({local, step.link, true});
    if (!visit(step.link, step.parent, step.isLocal)) return false;
  }
  return true;
}

}  // namespace vosmere
