// Walking a tree of links without recursion, so that no depth of nesting costs stack.
#pragma once

#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// Visits every link below `top`, not `top` itself: `enter(link)` before its children,
/// `leave(link)` after them. The children are visited when `enter` returns true. `leave` may free
/// the link.
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
      next = link->next;
      RNode* const parent = link->parent;
      leave(link);
      link = parent;
    } while (!next && link != top);
    link = next;
  }
}

}  // namespace vosmere
