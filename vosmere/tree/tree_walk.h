// Visits the links of a tree without recursion, so that deep trees need no more stack than flat
// ones.
#pragma once

#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// Visits every link below `top`, but not `top` itself: calls `enter(link)` before the link's
/// children and `leave(link)` after them. The children are visited only if `enter` returns true.
/// `enter` may reorder the link's children, `leave` may free the link.
template <class Enter, class Leave>
void WalkBelow(RNode* top, Enter enter, Leave leave) {
  RNode* link = top->firstChild;
  while (link) {
    if (enter(link) && link->firstChild) {
      link = link->firstChild;
      continue;
    }
    RNode* next = nullptr;
    do {
      // Read first, because `leave` may free the link.
      next = link->next;
      RNode* const parent = link->parent;
      leave(link);
      link = parent;
    } while (!next && link != top);
    link = next;
  }
}

}  // namespace vosmere
