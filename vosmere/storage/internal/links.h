// What changes of a tree do to its links.
#pragma once

#include <new>

#include "vosmere/base/chain.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

inline void Unlink(RNode* link) {
  chain::Unlink(link->parent->firstChild, link);
  link->parent = nullptr;
}

/// Frees a link and all below it, also local trees. Needs no memory.
void DeleteAll(RNode* top);

/// Throws if memory ran out for a text since this was made: items say that nowhere else.
class NoTextIsLost {
 public:
  void Check() const {
    if (LostTexts() != before_) throw std::bad_alloc();
  }

 private:
  const unsigned long before_ = LostTexts();
};

}  // namespace vosmere
